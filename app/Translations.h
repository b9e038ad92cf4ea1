// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QStringList>
#include <QTranslator>

// Translates the texts of the program and of Qt into the user's language while this lives. Needs the application
// object. English texts are in the sources, so for English, and where no language fits, it loads nothing.
class Translations {
public:
    // Uses the first of `languages` that there is. Names are those of QLocale::uiLanguages().
    explicit Translations(const QStringList &languages = languagesOfUser());

    // Empty in the C locale, whatever LANGUAGE says, as with gettext: scripts set it to get English.
    static QStringList languagesOfUser();
    static bool isCLocale();

private:
    QTranslator texts;
    QTranslator qtTexts;
};
