// SPDX-License-Identifier: MIT
#include "platform/macos/MacAccessibilityTrust.h"

#include <QtGlobal>

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>

namespace {

NSString *const kSettingsPage = @"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility";

} // namespace

bool MacAccessibilityTrust::isProcessTrusted() const
{
    return AXIsProcessTrusted();
}

void MacAccessibilityTrust::openAccessibilitySettings()
{
    NSURL *page = [NSURL URLWithString:kSettingsPage];
    if (!page)
        qFatal("The address of the accessibility settings is malformed");
    // Adds Parklet to the list there, so that the user only has to turn it on.
    AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)
                                      @{(__bridge NSString *)kAXTrustedCheckOptionPrompt : @YES});
    [NSWorkspace.sharedWorkspace openURL:page];
}
