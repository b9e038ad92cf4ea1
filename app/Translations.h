// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QStringList>
#include <QTranslator>

// Translates the texts of the program and of Qt into the user's language while it exists. Needs the application object.
// The texts in the sources are English, so it loads nothing for English or an unknown language.
class Translations {
public:
    // Uses the first of `languages` for which there is a translation. The names are those of QLocale::uiLanguages().
    explicit Translations(const QStringList &languages = languagesOfUser());

    // Empty in the C locale, whatever LANGUAGE says, as in gettext. Scripts set this locale to get English.
    static QStringList languagesOfUser();
    static bool isCLocale();

private:
    QTranslator texts;
    QTranslator qtTexts;
};
