// SPDX-License-Identifier: MIT
#include "app/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace {

const QString kSeparator = QStringLiteral("_");

} // namespace

bool Translations::isCLocale()
{
    for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QByteArray locale = qgetenv(variable);
        if (!locale.isEmpty())
            return locale == "C" || locale == "POSIX" || locale.startsWith("C.");
    }
    return false;
}

QStringList Translations::languagesOfUser()
{
    return isCLocale() ? QStringList() : QLocale::system().uiLanguages();
}

Translations::Translations(const QStringList &languages)
{
    for (const QString &language : languages) {
        const QLocale locale(language);
        // The user prefers English to every language after it.
        if (locale.language() == QLocale::English)
            return;
        if (!texts.load(locale, QStringLiteral("parklet"), kSeparator, QStringLiteral(":/i18n")))
            continue;
        QCoreApplication::installTranslator(&texts);
        if (qtTexts.load(locale, QStringLiteral("qtbase"), kSeparator,
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(&qtTexts);
        return;
    }
}
