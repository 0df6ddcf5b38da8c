// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: retain cycle
#import <Foundation/Foundation.h>

@interface Holder : NSObject
@property(copy) void (^done)(void);
- (void)run;
@end

@implementation Holder
- (void)begin {
    self.done = ^{
      [self run];
    };
}
- (void)run {
}
@end
