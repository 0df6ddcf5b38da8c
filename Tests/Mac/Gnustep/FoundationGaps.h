// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#import <Foundation/Foundation.h>

// What this Foundation lacks of the one that the adapters are written for. FakeFoundation.mm
// fills it.

typedef NSUInteger NSURLBookmarkCreationOptions;
enum { NSURLBookmarkCreationWithSecurityScope = 1 << 11 };

@interface NSURL (Gaps)
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDirectory
                                relativeToURL:(NSURL*)baseURL;
+ (NSURL*)URLByResolvingBookmarkData:(NSData*)data
                             options:(NSURLBookmarkResolutionOptions)options
                       relativeToURL:(NSURL*)relativeURL
                 bookmarkDataIsStale:(BOOL*)isStale
                               error:(NSError**)error;
- (NSData*)bookmarkDataWithOptions:(NSURLBookmarkCreationOptions)options
    includingResourceValuesForKeys:(NSArray*)keys
                     relativeToURL:(NSURL*)relativeURL
                             error:(NSError**)error;
- (BOOL)startAccessingSecurityScopedResource;
- (void)stopAccessingSecurityScopedResource;
- (const char*)fileSystemRepresentation;
@end
