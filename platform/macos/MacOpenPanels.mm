// SPDX-License-Identifier: MIT
#include "platform/macos/MacOpenPanels.h"

#include "platform/macos/MacConversions.h"
#include "platform/macos/MacModal.h"

#import <AppKit/AppKit.h>

std::optional<QUrl> MacOpenPanels::runModal(const OpenPanel &panel, QWidget *)
{
    NSOpenPanel *dialog = [NSOpenPanel openPanel];
    dialog.title = toNSString(panel.title);
    dialog.prompt = toNSString(panel.prompt);
    if (!panel.folders.isEmpty())
        dialog.directoryURL = toNSURL(panel.folders.first());
    dialog.canChooseFiles = YES;
    dialog.canChooseDirectories = NO;
    dialog.allowsMultipleSelection = NO;
    dialog.treatsFilePackagesAsDirectories = NO;
    std::optional<QUrl> chosen;
    runModally([&] {
        if ([dialog runModal] == NSModalResponseOK)
            chosen = fromNSURL(dialog.URL);
    });
    return chosen;
}
