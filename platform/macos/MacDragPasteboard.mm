// SPDX-License-Identifier: MIT
#include "platform/macos/MacDragPasteboard.h"

#include "platform/macos/MacConversions.h"

#import <AppKit/AppKit.h>

namespace {

NSPasteboard *dragPasteboard()
{
    return [NSPasteboard pasteboardWithName:NSPasteboardNameDrag];
}

} // namespace

MacDragPasteboard::MacDragPasteboard()
{
    ignoreContents();
}

void MacDragPasteboard::ignoreContents()
{
    ignored = dragPasteboard().changeCount;
}

qint64 MacDragPasteboard::changeCount() const
{
    const qint64 count = dragPasteboard().changeCount;
    if (count != ignored)
        known = count;
    return known;
}

QList<QUrl> MacDragPasteboard::fileURLs() const
{
    NSPasteboard *pasteboard = dragPasteboard();
    if (pasteboard.changeCount == ignored)
        return {};
    // Web addresses are read too, because a drop that has one takes no files.
    QList<QUrl> urls;
    for (id object in [pasteboard readObjectsForClasses:@[ [NSURL class] ] options:nil]) {
        const auto url = [object isKindOfClass:[NSURL class]] ? fromNSURL(object) : std::nullopt;
        if (!url)
            return {};
        urls.append(*url);
    }
    return urls;
}
