// SPDX-License-Identifier: MIT
#include "app/LaunchQuestions.h"

#include "platform/Platform.h"

#include <QCoreApplication>
#include <QEvent>

namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(LaunchQuestions)
};

// Notices that the user quits the program during a question. The question then closes as if it was dismissed. A further
// question would never show, because the main loop ends.
class QuitWatch : public QObject {
public:
    QuitWatch() { qApp->installEventFilter(this); }

    bool quits = false;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        quits = quits || (watched == qApp && event->type() == QEvent::Quit);
        return false;
    }
};

// Whether the first button was pressed.
std::optional<bool> ask(Platform &platform, const Alert &alert)
{
    const QuitWatch watch;
    const AlertAnswer answer = platform.alerts->runModal(alert);
    if (watch.quits)
        return {};
    return answer.isFirstButton();
}

} // namespace

std::optional<bool> LaunchQuestions::askForAccessibility(Platform &platform)
{
    Alert alert;
    alert.messageText = Text::tr("Accessibility Permission Required");
    alert.informativeText = Text::tr("Parklet needs Accessibility access to detect when you're dragging files. "
                                     "Please grant access in System Settings.");
    alert.buttons = {Text::tr("Open System Settings"), Text::tr("Later")};
    alert.activates = false;
    return ask(platform, alert);
}

std::optional<bool> LaunchQuestions::askAboutUpdateChecks(Platform &platform)
{
    Alert alert;
    alert.icon = platform.appearance->applicationIcon();
    alert.messageText = Text::tr("Check for updates automatically?");
    alert.informativeText = Text::tr("Should Parklet automatically check for updates? "
                                     "You can always check manually from the Parklet menu.");
    // The check box changes no setting.
    alert.checkboxTitle = Text::tr("Automatically download and install updates");
    alert.buttons = {Text::tr("Check Automatically"), Text::tr("Don't Check")};
    alert.dark = true;
    return ask(platform, alert);
}
