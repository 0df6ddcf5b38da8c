// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "StandardUserDefaults.h"

#include "FoundationValues.h"

namespace bildkurier {

namespace {

/// Keys are the program's own and plain ASCII.
NSString* _Nonnull keyOf(const std::string& key) {
    return static_cast<NSString* _Nonnull>(stringOf(key));
}

id _Nullable stored(const std::string& key) {
    return [NSUserDefaults.standardUserDefaults objectForKey:keyOf(key)];
}

}  // namespace

std::optional<std::string> StandardUserDefaults::string(const std::string& key) const {
    const id value = stored(key);
    if ([value isKindOfClass:[NSString class]]) return textOf(static_cast<NSString*>(value));
    if ([value isKindOfClass:[NSData class]]) return bytesOf(static_cast<NSData*>(value));
    return std::nullopt;
}

void StandardUserDefaults::setString(const std::string& key, const std::string& text) {
    NSString* const readable = stringOf(text);
    [NSUserDefaults.standardUserDefaults setObject:readable != nil ? readable : dataOf(text)
                                            forKey:keyOf(key)];
}

std::optional<bool> StandardUserDefaults::boolean(const std::string& key) const {
    const id value = stored(key);
    // Numbers are of another class.
    if (![value isKindOfClass:[[NSNumber numberWithBool:YES] class]]) return std::nullopt;
    return static_cast<NSNumber*>(value).boolValue != NO;
}

void StandardUserDefaults::setBoolean(const std::string& key, bool value) {
    [NSUserDefaults.standardUserDefaults setBool:value forKey:keyOf(key)];
}

}  // namespace bildkurier
