// SPDX-License-Identifier: MIT
#include "platform/macos/MacThumbnailGenerator.h"

#include "platform/FileURLs.h"
#include "platform/macos/MacConversions.h"

#include <QThreadPool>
#include <QTimer>

#include <utility>

#import <Foundation/Foundation.h>
#import <ImageIO/ImageIO.h>
#import <QuickLookThumbnailing/QuickLookThumbnailing.h>

#include <sys/stat.h>

namespace {

constexpr int kBlink = 100; // milliseconds

bool isRegularFile(const QUrl &file)
{
    struct stat status {};
    return ::stat(fileSystemPath(file).constData(), &status) == 0 && S_ISREG(status.st_mode);
}

// A number from an image's properties.
std::optional<int> numberIn(NSDictionary *properties, CFStringRef key)
{
    id number = properties[(__bridge NSString *)key];
    if (![number isKindOfClass:[NSNumber class]])
        return {};
    return [number intValue];
}

QSize pixelsOf(const QSizeF &size, double scale)
{
    return (size * scale).toSize().expandedTo(QSize(1, 1));
}

} // namespace

MacThumbnailGenerator::MacThumbnailGenerator()
    : open(std::make_shared<OpenThumbnails>())
{
}

MacThumbnailGenerator::~MacThumbnailGenerator()
{
    open->answerAll();
}

std::optional<QSize> MacThumbnailGenerator::imagePixelSize(const QUrl &file)
{
    if (!isRegularFile(file))
        return {};
    const CFRef<CGImageSourceRef> source(CGImageSourceCreateWithURL((__bridge CFURLRef)toNSURL(file), nullptr));
    if (!source)
        return {};
    NSDictionary *properties = CFBridgingRelease(CGImageSourceCopyPropertiesAtIndex(source.get(), 0, nullptr));
    const auto width = numberIn(properties, kCGImagePropertyPixelWidth);
    const auto height = numberIn(properties, kCGImagePropertyPixelHeight);
    if (!width || !height)
        return {};
    return QSize(*width, *height);
}

void MacThumbnailGenerator::generate(const QUrl &file, double edge, double scale, Completion completion,
                                     Delayed delayed)
{
    const quint64 id = open->add(std::move(completion));
    const std::shared_ptr<OpenThumbnails> jobs = open;
    if (delayed) {
        QTimer::singleShot(kBlink, &receiver, [jobs, id, delayed = std::move(delayed)] {
            if (jobs->isOpen(id))
                delayed();
        });
    }
    QThreadPool::globalInstance()->start([jobs, id, file, edge, scale] {
        @autoreleasepool {
            const auto pixels = imagePixelSize(file);
            const QSizeF size = fittedThumbnailSize(edge, pixels ? std::optional<QSizeF>(*pixels) : std::nullopt);
            const QSize bound = pixelsOf(size, scale);
            QLThumbnailGenerationRequest *request = [[QLThumbnailGenerationRequest alloc]
                  initWithFileAtURL:toNSURL(file)
                               size:size.toCGSize()
                              scale:scale
                representationTypes:QLThumbnailGenerationRequestRepresentationTypeThumbnail];
            [QLThumbnailGenerator.sharedGenerator
                generateBestRepresentationForRequest:request
                                   completionHandler:^(QLThumbnailRepresentation *thumbnail, NSError *) {
                                       const QImage image = fromCGImage(thumbnail.CGImage, bound);
                                       jobs->answer(id, image.isNull() ? std::nullopt
                                                                       : std::optional(Thumbnail{image, size}));
                                   }];
        }
    });
}
