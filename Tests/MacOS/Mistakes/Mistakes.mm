// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// With CASE=0 this passes; with any other, the check has to find the mistake.
#import <ImageCaptureCore/ImageCaptureCore.h>

#if CASE == 1
// required delegate method missing
@interface D : NSObject <ICDeviceBrowserDelegate>
@end
@implementation D
- (void)deviceBrowser:(ICDeviceBrowser*)b didAddDevice:(ICDevice*)d moreComing:(BOOL)m {
}
@end
#elif CASE == 2
// delegate method with moreComing where the protocol says moreGoing
@interface D : NSObject <ICDeviceBrowserDelegate>
@end
@implementation D
- (void)deviceBrowser:(ICDeviceBrowser*)b didAddDevice:(ICDevice*)d moreComing:(BOOL)m {
}
- (void)deviceBrowser:(ICDeviceBrowser*)b didRemoveDevice:(ICDevice*)d moreComing:(BOOL)m {
}
@end
#elif CASE == 3
// enum mask without a cast
void f(ICDeviceBrowser* b) {
    b.browsedDeviceTypeMask = ICDeviceTypeMaskCamera | ICDeviceLocationTypeMaskLocal;
}
#elif CASE == 4
// C string where an NSString is wanted
void f(ICDeviceBrowser* b) {
    NSString* s = "x";
    (void)s;
}
#elif CASE == 5
// completion block with the wrong type
void f(ICCameraFile* c) {
    [c requestDownloadWithOptions:nil
                       completion:^(NSError* e){
                       }];
}
#elif CASE == 6
// unknown selector
void f(ICCameraDevice* c) { [c requestOpenSessionNow]; }
#elif CASE == 7
// items are ICCameraItem, not ICCameraFile
void f(ICCameraDevice* c) {
    ICCameraFile* x = c.mediaFiles[0];
    (void)x;
}
#elif CASE == 8
// retain under ARC
void f(ICCameraDevice* c) { [c retain]; }
#elif CASE == 9
// pointer conversion without a bridge cast
const void* f(ICCameraDevice* c) { return (const void*)c; }
#elif CASE == 10
// nullable into nonnull
NSString* _Nonnull f(ICCameraDevice* c) { return c.serialNumberString; }
#elif CASE == 11
// assigning to a read-only property
void f(ICDevice* c) { c.name = @"x"; }
#elif CASE == 12
// delegate that does not conform
void f(ICDevice* c, NSObject* o) { c.delegate = o; }
#elif CASE == 13
// retain cycle through a block
@interface H : NSObject
@property(copy) void (^done)(void);
- (void)run;
@end
@implementation H
- (void)go {
    self.done = ^{
      [self run];
    };
}
- (void)run {
}
@end
#elif CASE == 14
// a function that macOS 13 does not have yet
#include <charconv>
auto f(char* begin, char* end) { return std::to_chars(begin, end, 1.5); }
#endif
