// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FoundationValues.h"

#include <chrono>

namespace bildkurier {

std::optional<std::string> textOf(NSString* string) {
    const char* const bytes = string.UTF8String;
    if (bytes == nullptr) return std::nullopt;
    return std::string(bytes, [string lengthOfBytesUsingEncoding:NSUTF8StringEncoding]);
}

NSString* stringOf(const std::string& text) {
    return [[NSString alloc] initWithBytes:text.data()
                                    length:text.size()
                                  encoding:NSUTF8StringEncoding];
}

std::string bytesOf(NSData* data) {
    return {static_cast<const char*>(data.bytes), static_cast<std::size_t>(data.length)};
}

NSData* dataOf(const std::string& bytes) {
    return [NSData dataWithBytes:bytes.data() length:bytes.size()];
}

std::optional<Date> dateOf(NSDate* date) {
    if (date == nil) return std::nullopt;
    const std::chrono::duration<double> sinceEpoch(date.timeIntervalSince1970);
    return Date(std::chrono::round<Date::duration>(sinceEpoch));
}

Error errorOf(NSError* error) {
    const std::string message = textOf(error.localizedDescription).value_or("");
    return Error{message.empty() ? "Unbekannter Fehler" : message};
}

NSURL* locationOf(const std::string& path, bool isFolder) {
    return [NSURL fileURLWithFileSystemRepresentation:path.c_str()
                                          isDirectory:isFolder
                                        relativeToURL:nil];
}

Url urlOf(NSURL* location) { return Url::file(location.fileSystemRepresentation); }

}  // namespace bildkurier
