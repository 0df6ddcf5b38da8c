// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>

namespace bildkurier {

/// Absent where the framework has none.
inline std::optional<std::string> textOf(NSString* _Nullable string) {
    const char* bytes = string.UTF8String;
    return bytes != nullptr ? std::optional<std::string>(bytes) : std::nullopt;
}

/// Empty where the bytes are not UTF-8, of which the framework makes nothing at all.
inline NSString* _Nonnull stringOf(const std::string& text) {
    NSString* string = [NSString stringWithUTF8String:text.c_str()];
    return string != nil ? (NSString* _Nonnull)string : @"";
}

}  // namespace bildkurier
