// SPDX-License-Identifier: MIT
#include "preferences/PreferencesWindowController.h"

#include "platform/Platform.h"
#include "platform/WhileAlive.h"
#include "preferences/AboutPane.h"
#include "preferences/AppearancePane.h"
#include "preferences/BehaviorPane.h"
#include "preferences/Controls.h"
#include "preferences/GeneralPane.h"
#include "preferences/SidebarViewController.h"
#include "preferences/WelcomePane.h"
#include "settings/AppSettings.h"
#include "settings/Notifications.h"

#include <QApplication>
#include <QDialog>
#include <QPainter>
#include <QShortcut>
#include <QSplitterHandle>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>

namespace {

// Points.
constexpr QSize kContentSize(700, 500);
constexpr QSize kMinimumSize(600, 420);
constexpr int kSidebarMinimum = 160;
constexpr int kSidebarMaximum = 200;
constexpr int kSidebarWidth = 180;
constexpr int kDividerWidth = 1;
constexpr int kDetailIndex = 1;

// Draws the divider as one thin line; the area that takes the mouse is wider.
class ThinSplitter : public QSplitter {
public:
    using QSplitter::QSplitter;

protected:
    class Handle : public QSplitterHandle {
    public:
        using QSplitterHandle::QSplitterHandle;

    protected:
        void paintEvent(QPaintEvent *) override
        {
            QPainter painter(this);
            painter.fillRect(contentsRect(), separatorColor(palette()));
        }
    };

    QSplitterHandle *createHandle() override { return new Handle(orientation(), this); }
};

} // namespace

PreferencesWindowController::PreferencesWindowController(Platform &services, AppSettings &store,
                                                         NotificationCenter &center, QObject *parent)
    : QObject(parent)
    , platform(services)
    , settings(store)
    , notifications(center)
    , preferencesWindow(std::make_unique<QWidget>())
    , splitVC(new ThinSplitter(Qt::Horizontal, preferencesWindow.get()))
    , sidebarVC(new SidebarViewController(*platform.appearance, splitVC))
    , detailVC(makePane(PrefPane::welcome))
{
    setUpWindow();
    setUpSplitView();
    centerWindow();
}

PreferencesWindowController::~PreferencesWindowController() = default;

QWidget *PreferencesWindowController::window() const
{
    return preferencesWindow.get();
}

bool PreferencesWindowController::isWindowVisible() const
{
    return preferencesWindow->isVisible() && !preferencesWindow->isMinimized();
}

void PreferencesWindowController::showWindow()
{
    // Show a maximised window maximised again.
    preferencesWindow->setWindowState(preferencesWindow->windowState() & ~Qt::WindowMinimized);
    const bool isFirst = !preferencesWindow->windowHandle();
    preferencesWindow->show();
    if (isFirst)
        preferencesWindow->windowHandle()->installEventFilter(this);
    platform.activationPolicy->activate(keyWindow());
}

void PreferencesWindowController::showWindowAgain()
{
    // No window of Qt's has the focus. The desktop's panel may have it, whose changes lead here, and keeps it.
    if (isWindowVisible() && !QApplication::activeWindow() && hasPanelOfTheDesktop())
        return;
    showWindow();
}

QWidget &PreferencesWindowController::keyWindow() const
{
    QWidget *active = QApplication::activeWindow();
    for (const QWidget *widget = active; widget; widget = widget->parentWidget()) {
        if (widget == preferencesWindow.get())
            return *active;
    }
    return *preferencesWindow;
}

bool PreferencesWindowController::hasPanelOfTheDesktop() const
{
    const auto panels = preferencesWindow->findChildren<QDialog *>();
    return std::any_of(panels.begin(), panels.end(), [](const QDialog *panel) {
        return panel->isVisible() && panel->testAttribute(Qt::WA_DontShowOnScreen);
    });
}

void PreferencesWindowController::setUpWindow()
{
    preferencesWindow->setWindowTitle(tr("Parklet Preferences"));
    preferencesWindow->setWindowIcon(platform.appearance->applicationIcon());
    preferencesWindow->setWindowRole(QStringLiteral("preferences"));
    preferencesWindow->setObjectName(QStringLiteral("preferences"));
    preferencesWindow->setMinimumSize(kMinimumSize);
    preferencesWindow->resize(kContentSize);
    preferencesWindow->setFont(systemFont(kLabelSize));

    auto *layout = new QVBoxLayout(preferencesWindow.get());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitVC);

    for (const QKeySequence &keys : {QKeySequence(Qt::CTRL | Qt::Key_W), QKeySequence(Qt::Key_Escape)})
        connect(new QShortcut(keys, preferencesWindow.get()), &QShortcut::activated, preferencesWindow.get(),
                &QWidget::close);
}

void PreferencesWindowController::setUpSplitView()
{
    splitVC->setHandleWidth(kDividerWidth);
    splitVC->setChildrenCollapsible(false);
    sidebarVC->setMinimumWidth(kSidebarMinimum);
    sidebarVC->setMaximumWidth(kSidebarMaximum);
    splitVC->addWidget(sidebarVC);
    splitVC->addWidget(detailVC);
    splitVC->setSizes({kSidebarWidth, kContentSize.width() - kSidebarWidth - kDividerWidth});
    sidebarVC->onSelect = whileAlive(this, [this](PrefPane selected) { showPane(selected); });
    showPane(PrefPane::welcome);
}

// The desktop frames the window when it is shown for the first time.
bool PreferencesWindowController::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() == QEvent::Expose) {
        object->removeEventFilter(this);
        centerWindow();
    }
    return QObject::eventFilter(object, event);
}

void PreferencesWindowController::centerWindow()
{
    const auto screen = platform.screens->main();
    if (!screen || preferencesWindow->isMaximized())
        return;
    const QWindow *handle = preferencesWindow->windowHandle();
    const QMargins margins = handle ? handle->frameMargins() : QMargins();
    QRectF frame(QPointF(), QSizeF(preferencesWindow->size().grownBy(margins)));
    frame.moveCenter(screen->visibleFrame.center());
    preferencesWindow->move(frame.topLeft().toPoint());
}

BasePane *PreferencesWindowController::makePane(PrefPane pane) const
{
    BasePane *made = nullptr;
    switch (pane) {
    case PrefPane::welcome:
        made = new WelcomePane(*platform.appearance);
        break;
    case PrefPane::general:
        made = new GeneralPane(settings, *platform.loginItem, notifications);
        break;
    case PrefPane::behavior:
        made = new BehaviorPane(settings, platform);
        break;
    case PrefPane::appearance:
        made = new AppearancePane(settings, *platform.appearance, notifications);
        break;
    case PrefPane::about:
        made = new AboutPane(*platform.appearance, *platform.workspace);
        break;
    }
    made->loadView();
    return made;
}

void PreferencesWindowController::showPane(PrefPane pane)
{
    BasePane *old = detailVC;
    const bool wasAppearance = qobject_cast<AppearancePane *>(old);
    if (splitVC->count() <= kDetailIndex)
        qFatal("The preferences window has lost its detail area.");
    detailVC = makePane(pane);
    splitVC->replaceWidget(kDetailIndex, detailVC);
    splitVC->setStretchFactor(kDetailIndex, 1);
    // The old pane may be handling the event that leads here.
    old->deleteLater();

    sidebarVC->reload();
    sidebarVC->selectSilently(pane);

    const bool isAppearance = pane == PrefPane::appearance;
    if (isAppearance != wasAppearance)
        notifications.post(Notifications::appearancePaneActive, {{QStringLiteral("active"), isAppearance}});
}
