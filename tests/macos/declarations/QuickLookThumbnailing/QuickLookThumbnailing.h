// SPDX-License-Identifier: MIT
#pragma once

#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NS_OPTIONS(NSUInteger, QLThumbnailGenerationRequestRepresentationTypes) {
    QLThumbnailGenerationRequestRepresentationTypeIcon = 1 << 0,
    QLThumbnailGenerationRequestRepresentationTypeLowQualityThumbnail = 1 << 1,
    QLThumbnailGenerationRequestRepresentationTypeThumbnail = 1 << 2,
};

API_AVAILABLE(macos(10.15))
@interface QLThumbnailGenerationRequest : NSObject
- (instancetype)initWithFileAtURL:(NSURL *)url
                             size:(CGSize)size
                            scale:(CGFloat)scale
              representationTypes:(QLThumbnailGenerationRequestRepresentationTypes)representationTypes;
@end

API_AVAILABLE(macos(10.15))
@interface QLThumbnailRepresentation : NSObject
@property(nonatomic, readonly) CGImageRef CGImage;
@end

API_AVAILABLE(macos(10.15))
@interface QLThumbnailGenerator : NSObject
@property(class, nonatomic, readonly) QLThumbnailGenerator *sharedGenerator;
- (void)generateBestRepresentationForRequest:(QLThumbnailGenerationRequest *)request
                           completionHandler:(void (^)(QLThumbnailRepresentation *_Nullable thumbnail,
                                                       NSError *_Nullable error))completionHandler;
@end

#pragma clang assume_nonnull end
