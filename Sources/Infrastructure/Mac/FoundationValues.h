// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"
#include "Error.h"
#include "Url.h"

#import <Foundation/Foundation.h>

#include <optional>
#include <string>

// Values of the system's frameworks and ours.

NS_ASSUME_NONNULL_BEGIN

namespace bildkurier {

/// Absent where there is no string, or one that UTF-8 cannot express.
std::optional<std::string> textOf(NSString* _Nullable string);

/// Nil for bytes that are no UTF-8.
NSString* _Nullable stringOf(const std::string& text);

std::string bytesOf(NSData* data);
NSData* dataOf(const std::string& bytes);

std::optional<Date> dateOf(NSDate* _Nullable date);

/// The system's own words for it.
Error errorOf(NSError* _Nullable error);

/// Whatever bytes the path has.
NSURL* locationOf(const std::string& path, bool isFolder);
Url urlOf(NSURL* location);

}  // namespace bildkurier

NS_ASSUME_NONNULL_END
