// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

// The part of the framework that this program uses, as its public documentation describes it,
// so that a machine without the system's own headers can check types. Nothing is built with it.

#include <stddef.h>
#include <sys/types.h>

// clang-format off
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_ENUM(type, name) enum __attribute__((enum_extensibility(open))) name : type name; enum name : type
#define NS_OPTIONS(type, name) type name; enum __attribute__((flag_enum, enum_extensibility(open))) : type
#define NS_TYPED_ENUM __attribute__((swift_wrapper(enum)))
#define API_AVAILABLE_MACOS(version) __attribute__((availability(macos, introduced = version)))
#define NS_RETURNS_INNER_POINTER __attribute__((objc_returns_inner_pointer))
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
// clang-format on

#ifdef __aarch64__
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable* _Nullable itemsPtr;
    unsigned long* _Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

NS_ASSUME_NONNULL_BEGIN

@protocol NSObject
- (BOOL)isEqual:(nullable id)object;
- (BOOL)isKindOfClass:(Class)aClass;
- (Class)class;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
@end

@protocol NSCopying
@end

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)count;
@end

@interface NSData : NSObject <NSCopying>
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes NS_RETURNS_INNER_POINTER;
@end

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject <NSCopying>
- (nullable instancetype)initWithBytes:(const void*)bytes
                                length:(NSUInteger)length
                              encoding:(NSStringEncoding)encoding;
- (NSUInteger)lengthOfBytesUsingEncoding:(NSStringEncoding)encoding;
@property(readonly) NSUInteger length;
@property(nullable, readonly) const char* UTF8String NS_RETURNS_INNER_POINTER;
@end

@interface NSNumber : NSObject <NSCopying>
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithInt:(int)value;
@property(readonly) BOOL boolValue;
@end

@interface NSDate : NSObject <NSCopying>
@property(readonly) NSTimeInterval timeIntervalSince1970;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
@property(readonly) NSUInteger count;
@property(nullable, nonatomic, readonly) ObjectType firstObject;
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)index;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject <NSCopying>
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[_Nullable])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[_Nullable])keys
                                count:(NSUInteger)count;
@end

typedef NSString* NSErrorDomain;

@interface NSError : NSObject <NSCopying>
@property(readonly, copy) NSErrorDomain domain;
@property(readonly) NSInteger code;
@property(readonly, copy) NSString* localizedDescription;
@end

@interface NSProgress : NSObject
- (void)cancel;
@end

typedef NSString* NSURLResourceKey NS_TYPED_ENUM;

typedef NS_OPTIONS(NSUInteger, NSURLBookmarkCreationOptions) {
    NSURLBookmarkCreationMinimalBookmark = 1UL << 9,
    NSURLBookmarkCreationSuitableForBookmarkFile = 1UL << 10,
    NSURLBookmarkCreationWithSecurityScope = 1UL << 11,
    NSURLBookmarkCreationSecurityScopeAllowOnlyReadAccess = 1UL << 12,
};

typedef NS_OPTIONS(NSUInteger, NSURLBookmarkResolutionOptions) {
    NSURLBookmarkResolutionWithoutUI = 1UL << 8,
    NSURLBookmarkResolutionWithoutMounting = 1UL << 9,
    NSURLBookmarkResolutionWithSecurityScope = 1UL << 10,
};

@interface NSURL : NSObject <NSCopying>
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)isDirectory
                                relativeToURL:(nullable NSURL*)baseURL;
+ (nullable instancetype)URLByResolvingBookmarkData:(NSData*)data
                                            options:(NSURLBookmarkResolutionOptions)options
                                      relativeToURL:(nullable NSURL*)relativeURL
                                bookmarkDataIsStale:(nullable BOOL*)isStale
                                              error:(NSError* _Nullable __autoreleasing* _Nullable)
                                                        error;
- (nullable NSData*)bookmarkDataWithOptions:(NSURLBookmarkCreationOptions)options
             includingResourceValuesForKeys:(nullable NSArray<NSURLResourceKey>*)keys
                              relativeToURL:(nullable NSURL*)relativeURL
                                      error:(NSError* _Nullable __autoreleasing* _Nullable)error;
- (BOOL)startAccessingSecurityScopedResource;
- (void)stopAccessingSecurityScopedResource;
@property(nullable, readonly, copy) NSString* path;
@property(readonly) const char* fileSystemRepresentation NS_RETURNS_INNER_POINTER;
@end

typedef NS_OPTIONS(unsigned long long, NSActivityOptions) {
    NSActivityIdleDisplaySleepDisabled = 1ULL << 40,
    NSActivityIdleSystemSleepDisabled = 1ULL << 20,
    NSActivityUserInitiated = 0x00FFFFFFULL | NSActivityIdleSystemSleepDisabled,
    NSActivityBackground = 0x000000FFULL,
};

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)options reason:(NSString*)reason;
- (void)endActivity:(id<NSObject>)activity;
@end

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable id)objectForKey:(NSString*)key;
- (void)setObject:(nullable id)value forKey:(NSString*)key;
- (void)setBool:(BOOL)value forKey:(NSString*)key;
@end

typedef NS_ENUM(NSUInteger, NSSearchPathDirectory) {
    NSCachesDirectory = 13,
    NSApplicationSupportDirectory = 14,
};

typedef NS_OPTIONS(NSUInteger, NSSearchPathDomainMask) {
    NSUserDomainMask = 1,
};

extern "C" NSArray<NSString*>* NSSearchPathForDirectoriesInDomains(NSSearchPathDirectory directory,
                                                                   NSSearchPathDomainMask domains,
                                                                   BOOL expandTilde);

NS_ASSUME_NONNULL_END
