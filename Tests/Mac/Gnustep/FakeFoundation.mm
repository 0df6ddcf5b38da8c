// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeFoundation.h"

#include <fmt/format.h>

using bildkurier::FakeFoundation;

namespace bildkurier {

FakeFoundation& FakeFoundation::shared() {
    static FakeFoundation fake;
    return fake;
}

void FakeFoundation::reset() { shared() = {}; }

}  // namespace bildkurier

namespace {

FakeFoundation& fake() { return FakeFoundation::shared(); }

}  // namespace

@implementation NSURL (Gaps)

+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDirectory
                                relativeToURL:(NSURL*)baseURL {
    return [NSURL fileURLWithPath:[NSString stringWithUTF8String:path] isDirectory:isDirectory];
}

+ (NSURL*)URLByResolvingBookmarkData:(NSData*)data
                             options:(NSURLBookmarkResolutionOptions)options
                       relativeToURL:(NSURL*)relativeURL
                 bookmarkDataIsStale:(BOOL*)isStale
                               error:(NSError**)error {
    const std::string path(static_cast<const char*>([data bytes]), [data length]);
    fake().calls.push_back(fmt::format("resolve {} {:#x}", path, options));
    *isStale = fake().isStale;
    return fake().findsFolders ? [NSURL fileURLWithPath:[NSString stringWithUTF8String:path.c_str()]
                                            isDirectory:YES]
                               : nil;
}

- (NSData*)bookmarkDataWithOptions:(NSURLBookmarkCreationOptions)options
    includingResourceValuesForKeys:(NSArray*)keys
                     relativeToURL:(NSURL*)relativeURL
                             error:(NSError**)error {
    fake().calls.push_back(
        fmt::format("bookmark {} {:#x}", [self fileSystemRepresentation], options));
    const char* const path = [self fileSystemRepresentation];
    return fake().makesBookmarks ? [NSData dataWithBytes:path length:strlen(path)] : nil;
}

- (BOOL)startAccessingSecurityScopedResource {
    fake().calls.push_back(fmt::format("start {}", [self fileSystemRepresentation]));
    fake().accessed.push_back(self);
    return fake().startsAccess;
}

- (void)stopAccessingSecurityScopedResource {
    fake().calls.push_back(fmt::format("stop {}", [self fileSystemRepresentation]));
    fake().accessed.push_back(self);
}

- (const char*)fileSystemRepresentation {
    return [[self path] fileSystemRepresentation];
}

@end

@interface NSProcessInfo (Fake)
@end

@implementation NSProcessInfo (Fake)

- (id)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason {
    fake().calls.push_back(fmt::format("begin {:#x} {}", static_cast<unsigned long long>(options),
                                       [reason UTF8String]));
    return reason;
}

- (void)endActivity:(id<NSObject>)activity {
    fake().calls.push_back(fmt::format("end {}", [static_cast<NSString*>(activity) UTF8String]));
}

@end

/// In the place of the database, whose file would lie in the user's home.
@interface FakeDefaults : NSObject
@end

@implementation FakeDefaults

- (id)objectForKey:(NSString*)key {
    return [fake().defaults objectForKey:key];
}
- (void)setObject:(id)value forKey:(NSString*)key {
    [fake().defaults setObject:value forKey:key];
}
- (void)setBool:(BOOL)value forKey:(NSString*)key {
    [fake().defaults setObject:[NSNumber numberWithBool:value] forKey:key];
}

@end

@interface NSUserDefaults (Fake)
@end

@implementation NSUserDefaults (Fake)

+ (NSUserDefaults*)standardUserDefaults {
    return (NSUserDefaults*)[FakeDefaults new];
}

@end
