// SPDX-License-Identifier: MIT
#include "platform/macos/MacOpenPanels.h"

#include "platform/macos/MacConversions.h"

#import <AppKit/AppKit.h>

std::optional<QUrl> MacOpenPanels::runModal(const OpenPanel &panel, QWidget *)
{
    NSOpenPanel *dialog = [NSOpenPanel openPanel];
    dialog.title = toNSString(panel.title);
    dialog.prompt = toNSString(panel.prompt);
    dialog.directoryURL = toNSURL(panel.folders.first());
    dialog.canChooseFiles = YES;
    dialog.canChooseDirectories = NO;
    dialog.allowsMultipleSelection = NO;
    dialog.treatsFilePackagesAsDirectories = NO;
    if ([dialog runModal] != NSModalResponseOK)
        return {};
    return fromNSURL(dialog.URL);
}
