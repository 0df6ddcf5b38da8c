// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

// The part of the framework that this program uses; see Foundation/Foundation.h.

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

typedef NSInteger NSModalResponse NS_TYPED_ENUM;
static const NSModalResponse NSModalResponseOK = 1;

@interface NSOpenPanel : NSObject
+ (NSOpenPanel*)openPanel;
- (NSModalResponse)runModal;
@property(nullable, readonly, copy) NSURL* URL;
@property(nullable, copy) NSURL* directoryURL;
@property(null_resettable, copy) NSString* prompt;
@property BOOL canChooseDirectories;
@property BOOL canChooseFiles;
@property BOOL canCreateDirectories;
@property BOOL showsHiddenFiles;
@end

NS_ASSUME_NONNULL_END
