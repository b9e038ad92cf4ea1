// SPDX-License-Identifier: MIT
#include "tests/contracts/ForeignDrags.h"

#include "platform/macos/MacConversions.h"
#include "tests/support/DragEvents.h"

#import <AppKit/AppKit.h>

namespace {

NSPasteboard *dragPasteboard()
{
    return [NSPasteboard pasteboardWithName:NSPasteboardNameDrag];
}

// All that a drag of another program leaves to see without the permission.
class DragOnThePasteboard : public ForeignDragUnderWay {
public:
    DragOnThePasteboard() = default;
    Q_DISABLE_COPY_MOVE(DragOnThePasteboard)
    ~DragOnThePasteboard() override { [dragPasteboard() clearContents]; }
};

} // namespace

std::unique_ptr<ForeignDragUnderWay> dragInAnotherProgram(Platform &, const QList<QUrl> &urls)
{
    NSMutableArray<NSURL *> *objects = [NSMutableArray array];
    for (const QUrl &url : urls)
        [objects addObject:toNSURL(url)];
    [dragPasteboard() clearContents];
    if (![dragPasteboard() writeObjects:objects])
        return nullptr;
    return std::make_unique<DragOnThePasteboard>();
}

std::unique_ptr<ForeignDragUnderWay> dropFromAnotherProgram(QWidget &window, const QList<QUrl> &urls)
{
    // AppKit begins no drag without a hand, so this is what Qt delivers of one.
    QMimeData data;
    data.setUrls(urls);
    sendDragEnter(window, data);
    sendDrop(window, data);
    return std::make_unique<ForeignDragUnderWay>();
}
