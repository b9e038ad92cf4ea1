// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QStringList>
#include <QTranslator>

// The texts of the program, and those of Qt, in the user's language for as long as this lives; the application object
// has to be there. English is in the sources: who asks for it first, or for languages that there are not, has nothing
// read.
class Translations {
public:
    // Takes the first of `languages`, which are named as QLocale::uiLanguages() names them.
    explicit Translations(const QStringList &languages = languagesOfUser());

    // None in the C locale, whatever LANGUAGE says: as gettext has it, and the scripts that set it.
    static QStringList languagesOfUser();
    static bool isCLocale();

private:
    QTranslator texts;
    QTranslator qtTexts;
};
