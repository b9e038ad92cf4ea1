// SPDX-License-Identifier: MIT
#include "updates/UpdateAlerts.h"

#include "platform/Alerts.h"
#include "updates/VersionRecord.h"

#include <QCoreApplication>

namespace {

// An alert shows at most so many characters of a text from the record, which may be of any length.
constexpr qsizetype kLongestVersion = 64;
constexpr qsizetype kLongestNotes = 4000;

QString shortened(const QString &text, qsizetype longest)
{
    return text.size() <= longest ? text : text.left(longest) + QChar(u'…');
}

struct Text {
    Q_DECLARE_TR_FUNCTIONS(UpdateChecker)
};

} // namespace

Alert updateAlert(const VersionRecord &record)
{
    Alert alert;
    alert.messageText = Text::tr("Parklet update available");
    // The values may contain %1 and %2 themselves, so both are filled in by one call.
    const QString version = shortened(record.version, kLongestVersion);
    const QString notes = shortened(record.notes, kLongestNotes);
    alert.informativeText = notes.isEmpty()
                                ? Text::tr("Version %1 is available.").arg(version)
                                : Text::tr("Version %1 is available.\n\nRelease notes: %2").arg(version, notes);
    alert.buttons = {Text::tr("Download Update"), Text::tr("Later")};
    return alert;
}

Alert upToDateAlert()
{
    Alert alert;
    alert.messageText = Text::tr("Parklet is up to date");
    alert.informativeText = Text::tr("You're running the latest version.");
    alert.buttons = {Text::tr("OK")};
    return alert;
}
