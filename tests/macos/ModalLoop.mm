// SPDX-License-Identifier: MIT
#include "tests/macos/ModalLoop.h"

#import <AppKit/AppKit.h>

void wakeModalLoop()
{
    NSEvent *event = [NSEvent otherEventWithType:NSEventTypeApplicationDefined
                                        location:NSZeroPoint
                                   modifierFlags:NSEventModifierFlags {}
                                       timestamp:0
                                    windowNumber:0
                                         context:nil
                                         subtype:0
                                           data1:0
                                           data2:0];
    [NSApplication.sharedApplication postEvent:event atStart:NO];
}

void abortModalLoop()
{
    [NSApplication.sharedApplication stopModalWithCode:NSModalResponseAbort];
    wakeModalLoop();
}
