// SPDX-License-Identifier: MIT
#include "platform/macos/MacAlerts.h"

#include "platform/common/LongText.h"
#include "platform/macos/MacConversions.h"
#include "platform/macos/MacModal.h"

#import <AppKit/AppKit.h>

namespace {

constexpr int kIconSize = 64;                           // points
constexpr double kIconScale = 2;                        // pixels a point, on the sharpest screens
constexpr NSRect kLongTextFrame = {{0, 0}, {320, 200}}; // points

NSView *scrollingText(const QString &text)
{
    NSScrollView *area = [NSTextView scrollableTextView];
    area.frame = kLongTextFrame;
    area.drawsBackground = NO;
    NSTextView *view = area.documentView;
    view.editable = NO;
    view.drawsBackground = NO;
    view.string = toNSString(text);
    // Otherwise the text is black on any background.
    view.textColor = NSColor.labelColor;
    return area;
}

} // namespace

AlertAnswer MacAlerts::runModal(const Alert &question)
{
    NSAlert *alert = [[NSAlert alloc] init];
    if (!question.icon.isNull())
        alert.icon = toNSImage(question.icon, QSize(kIconSize, kIconSize), kIconScale);
    alert.messageText = toNSString(question.messageText);
    const bool isLong = question.checkboxTitle.isEmpty() && isLongText(question.informativeText);
    alert.informativeText = isLong ? @"" : toNSString(question.informativeText);
    for (const QString &title : question.buttons)
        [alert addButtonWithTitle:toNSString(title)];

    NSButton *checkbox = nil;
    if (!question.checkboxTitle.isEmpty()) {
        checkbox = [NSButton checkboxWithTitle:toNSString(question.checkboxTitle) target:nil action:nil];
        alert.accessoryView = checkbox;
    } else if (isLong) {
        alert.accessoryView = scrollingText(question.informativeText);
    }
    [alert layout];
    if (question.dark)
        alert.window.appearance = [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua];
    // The system may refuse to activate the application. An alert behind other windows would then wait for an answer
    // that the user cannot give.
    alert.window.level = NSModalPanelWindowLevel;
    alert.window.collectionBehavior =
        NSWindowCollectionBehaviorMoveToActiveSpace | NSWindowCollectionBehaviorFullScreenAuxiliary;
    alert.window.hidesOnDeactivate = NO;

    AlertAnswer answer;
    runModally([&] {
        if (question.activates)
            [NSApplication.sharedApplication activateIgnoringOtherApps:YES];
        [alert.window center];
        [alert.window orderFrontRegardless];
        const NSModalResponse response = [alert runModal];
        const auto button = response - NSAlertFirstButtonReturn;
        answer.button = button >= 0 && button < question.buttons.size() ? static_cast<int>(button) : -1;
        answer.checkboxOn = checkbox.state == NSControlStateValueOn;
    });
    return answer;
}
