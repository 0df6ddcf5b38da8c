// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: method 'deviceBrowser:didRemoveDevice:moreGoing:' in protocol 'ICDeviceBrowserDelegate'
// not implemented
#import <ImageCaptureCore/ImageCaptureCore.h>

@interface Listener : NSObject <ICDeviceBrowserDelegate>
@end

@implementation Listener
- (void)deviceBrowser:(ICDeviceBrowser*)browser
         didAddDevice:(ICDevice*)device
           moreComing:(BOOL)moreComing {
}
@end
