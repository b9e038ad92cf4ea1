// SPDX-License-Identifier: MIT
#include "app/Translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace {

const QString kSeparator = QStringLiteral("_");

} // namespace

Translations::Translations(const QStringList &languages)
{
    for (const QString &language : languages) {
        const QLocale locale(language);
        // What follows English in the user's order is not wanted, though it is there.
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
