// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Own declarations of the little that this project uses of the framework, to check types where the
// framework is not at hand. Spelling and nullability follow the public documentation.
#pragma once
#include <stddef.h>
#include <sys/types.h>
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_ENUM(T, N)                                       \
    enum __attribute__((enum_extensibility(open))) N : T N; \
    enum N : T
#define NS_OPTIONS(T, N) \
    T N;                 \
    enum __attribute__(( \
        flag_enum, enum_extensibility(open))) : T /* C++ form: N is a plain integer typedef */
#define NS_TYPED_ENUM __attribute__((swift_wrapper(enum)))
#define API_AVAILABLE_MACOS(v) __attribute__((availability(macos, introduced = v)))
typedef signed long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
#ifdef __aarch64__
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
@class NSString, NSArray<__covariant T>, NSDictionary<__covariant K, __covariant V>, NSURL, NSData,
    NSDate, NSError, NSProgress;
typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;
NS_ASSUME_NONNULL_BEGIN
@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
- (BOOL)isKindOfClass:(Class)cls;
- (BOOL)respondsToSelector:(SEL)sel;
- (instancetype)self;
@end
__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (instancetype)new;
+ (Class)class;
- (instancetype)init;
- (void)dealloc;
@end
@protocol NSCopying
- (id)copy;
@end
@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len;
@end
@interface NSString : NSObject <NSCopying>
+ (nullable instancetype)stringWithUTF8String:(const char*)s;
@property(readonly, nullable) const char* UTF8String;
@property(readonly) NSUInteger length;
@end
@interface NSNumber : NSObject <NSCopying>
+ (NSNumber*)numberWithBool:(BOOL)b;
+ (NSNumber*)numberWithInt:(int)i;
+ (NSNumber*)numberWithLong:(long)l;
+ (NSNumber*)numberWithUnsignedLong:(unsigned long)l;
+ (NSNumber*)numberWithLongLong:(long long)l;
+ (NSNumber*)numberWithDouble:(double)d;
@end
@interface NSArray<__covariant T> : NSObject <NSFastEnumeration>
@property(readonly) NSUInteger count;
- (T)objectAtIndexedSubscript:(NSUInteger)i;
+ (instancetype)arrayWithObjects:(const T _Nonnull[_Nullable])o count:(NSUInteger)n;
@end
@interface NSDictionary<__covariant K, __covariant V> : NSObject
- (nullable V)objectForKeyedSubscript:(K)key;
+ (instancetype)dictionaryWithObjects:(const V _Nonnull[_Nullable])o
                              forKeys:(const K _Nonnull[_Nullable])k
                                count:(NSUInteger)n;
@end
@interface NSDate : NSObject
@property(readonly) NSTimeInterval timeIntervalSince1970;
@end
@interface NSData : NSObject
+ (instancetype)dataWithBytes:(nullable const void*)b length:(NSUInteger)n;
@property(readonly) const void* bytes;
@property(readonly) NSUInteger length;
@end
@interface NSError : NSObject
@property(readonly, copy) NSString* domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSString* localizedDescription;
@end
@interface NSProgress : NSObject
- (void)cancel;
@end
typedef NSString* NSURLResourceKey NS_TYPED_ENUM;
typedef NS_OPTIONS(NSUInteger, NSURLBookmarkCreationOptions) {
    NSURLBookmarkCreationWithSecurityScope = 1UL << 11,
    NSURLBookmarkCreationSecurityScopeAllowOnlyReadAccess = 1UL << 12,
};
typedef NS_OPTIONS(NSUInteger, NSURLBookmarkResolutionOptions) {
    NSURLBookmarkResolutionWithoutUI = 1UL << 8,
    NSURLBookmarkResolutionWithoutMounting = 1UL << 9,
    NSURLBookmarkResolutionWithSecurityScope = 1UL << 10,
};
@interface NSURL : NSObject <NSCopying>
+ (NSURL*)fileURLWithPath:(NSString*)path;
+ (NSURL*)fileURLWithPath:(NSString*)path isDirectory:(BOOL)isDir;
@property(nullable, readonly, copy) NSString* path;
- (nullable NSData*)bookmarkDataWithOptions:(NSURLBookmarkCreationOptions)options
             includingResourceValuesForKeys:(nullable NSArray<NSURLResourceKey>*)keys
                              relativeToURL:(nullable NSURL*)relativeURL
                                      error:(NSError* _Nullable __autoreleasing* _Nullable)error;
+ (nullable instancetype)URLByResolvingBookmarkData:(NSData*)data
                                            options:(NSURLBookmarkResolutionOptions)options
                                      relativeToURL:(nullable NSURL*)relativeURL
                                bookmarkDataIsStale:(BOOL* _Nullable)isStale
                                              error:(NSError* _Nullable __autoreleasing* _Nullable)
                                                        error;
- (BOOL)startAccessingSecurityScopedResource;
- (void)stopAccessingSecurityScopedResource;
@end
typedef NS_OPTIONS(unsigned long long, NSActivityOptions) {
    NSActivityIdleDisplaySleepDisabled = (1ULL << 40),
    NSActivityIdleSystemSleepDisabled = (1ULL << 20),
    NSActivitySuddenTerminationDisabled = (1ULL << 14),
    NSActivityAutomaticTerminationDisabled = (1ULL << 15),
    NSActivityUserInitiated = (0x00FFFFFFULL | NSActivityIdleSystemSleepDisabled),
    NSActivityUserInitiatedAllowingIdleSystemSleep = (NSActivityUserInitiated &
                                                      ~NSActivityIdleSystemSleepDisabled),
    NSActivityBackground = 0x000000FFULL,
    NSActivityLatencyCritical = 0xFF00000000ULL,
};
@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
- (void)endActivity:(id<NSObject>)activity;
@end
@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable NSString*)stringForKey:(NSString*)key;
- (nullable NSData*)dataForKey:(NSString*)key;
- (nullable id)objectForKey:(NSString*)key;
- (BOOL)boolForKey:(NSString*)key;
- (void)setObject:(nullable id)value forKey:(NSString*)key;
- (void)setBool:(BOOL)value forKey:(NSString*)key;
- (void)removeObjectForKey:(NSString*)key;
@end
NS_ASSUME_NONNULL_END
