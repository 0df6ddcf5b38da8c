// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpUrl.h"

#include "ParsedNumber.h"

#include <algorithm>

namespace bildkurier {

namespace {

/// A decimal integer from 1 to 65535.
std::optional<std::uint16_t> portNumber(std::string_view text) {
    const auto port = parsedNumber<std::uint16_t>(text);
    return port == 0 ? std::nullopt : port;
}

}  // namespace

Url sftpURL(std::string_view user, std::string_view host, std::string_view path) {
    Url url{.scheme = "sftp", .user = std::string(user), .host = std::string(host)};
    if (std::ranges::count(host, ':') == 1) {
        const auto colon = host.find(':');
        if (const auto port = portNumber(host.substr(colon + 1))) {
            url.host = host.substr(0, colon);
            url.port = port;
        }
    }
    url.path = path.starts_with('/') ? std::string(path) : "/" + std::string(path);
    return url;
}

std::string withoutBlanks(const std::string& text) {
    constexpr auto blanks = " \t";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace bildkurier
