// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: 'requestLater' is only available on macOS 14.0 or newer
#import <Foundation/Foundation.h>

@interface NSObject (Later)
- (void)requestLater API_AVAILABLE_MACOS(14.0);
@end

void later(NSObject* object) { [object requestLater]; }
