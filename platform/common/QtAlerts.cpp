// SPDX-License-Identifier: MIT
#include "platform/common/QtAlerts.h"

#include "platform/ActivationPolicy.h"
#include "platform/SystemAppearance.h"
#include "platform/common/LongText.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLayout>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>

namespace {

constexpr int kIconSize = 64;          // points
constexpr int kTextWidth = 320;        // points
constexpr int kLargestWordWidth = 400; // points
constexpr int kLongTextHeight = 200;   // points

QPalette darkPalette()
{
    const QColor window(0x2b, 0x2b, 0x2d);
    const QColor button(0x45, 0x45, 0x48);
    const QColor text(0xf2, 0xf2, 0xf4);
    QPalette palette(button, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Base, QColor(0x1e, 0x1e, 0x20));
    return palette;
}

void emphasizeMessage(QMessageBox &box)
{
    if (auto *const label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_label"))) {
        QFont font = label->font();
        font.setBold(true);
        label->setFont(font);
    }
}

// Shows the informative text at a readable width.
void setInformativeText(QMessageBox &box, const QString &text)
{
    const bool isLong = isLongText(text);
    // A label lays out all of its text at every change, so limit the length.
    box.setInformativeText(isLong ? QStringLiteral(" ") : text);
    auto *const label = box.findChild<QLabel *>(QStringLiteral("qt_msgbox_informativelabel"));
    if (!label)
        return;
    label->setMinimumWidth(kTextWidth);
    // A label cannot break a long word.
    if (!isLong && label->minimumSizeHint().width() <= kLargestWordWidth)
        return;
    auto *const area = new QPlainTextEdit(text, &box);
    area->setReadOnly(true);
    area->document()->setDocumentMargin(0);
    area->setFrameShape(QFrame::NoFrame);
    area->viewport()->setAutoFillBackground(false);
    area->setMinimumSize(kTextWidth + area->verticalScrollBar()->sizeHint().width(), kLongTextHeight);
    delete box.layout()->replaceWidget(label, area);
    label->hide();
}

} // namespace

QtAlerts::QtAlerts(const SystemAppearance &systemAppearance, ActivationPolicy &policy)
    : appearance(systemAppearance)
    , activationPolicy(policy)
{
}

AlertAnswer QtAlerts::runModal(const Alert &alert)
{
    QMessageBox box;
    // No text here is markup, and some come from outside.
    box.setTextFormat(Qt::PlainText);
    box.setWindowTitle(alert.messageText);
    box.setText(alert.messageText);
    QIcon icon = alert.icon.isNull() ? appearance.applicationIcon() : alert.icon;
    // The icon theme may have an icon for the application even where our own image is missing.
    if (icon.isNull())
        icon = QApplication::windowIcon();
    if (!icon.isNull())
        box.setIconPixmap(icon.pixmap(QSize(kIconSize, kIconSize), box.devicePixelRatioF()));
    if (alert.dark) {
        QPalette palette = darkPalette();
        palette.setColor(QPalette::Highlight, appearance.accentColor());
        box.setPalette(palette);
    }

    QList<QPushButton *> buttons;
    for (const QString &title : alert.buttons) {
        // Escape and closing the window choose the last of several buttons.
        const bool closes = buttons.size() + 1 == alert.buttons.size();
        buttons.append(
            box.addButton(title, closes && !buttons.isEmpty() ? QMessageBox::RejectRole : QMessageBox::AcceptRole));
    }
    if (!buttons.isEmpty()) {
        box.setDefaultButton(buttons.first());
        box.setEscapeButton(buttons.last());
    }
    QCheckBox *checkBox = nullptr;
    if (!alert.checkboxTitle.isEmpty()) {
        checkBox = new QCheckBox(alert.checkboxTitle, &box);
        box.setCheckBox(checkBox);
    }

    // The message box lays itself out again at each call above, so add our own views last.
    emphasizeMessage(box);
    setInformativeText(box, alert.informativeText);

    if (alert.activates)
        activationPolicy.activate(box);
    box.exec();

    AlertAnswer answer;
    answer.button = static_cast<int>(buttons.indexOf(static_cast<QPushButton *>(box.clickedButton())));
    answer.checkboxOn = checkBox && checkBox->isChecked();
    return answer;
}
