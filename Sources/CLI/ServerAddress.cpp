// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ServerAddress.h"

#include "FileName.h"
#include "ServerName.h"
#include "ServersFolder.h"
#include "SftpUrl.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace bildkurier {

namespace {

constexpr std::string_view scheme = "sftp://";

std::optional<char> escapedByte(std::string_view text) {
    if (text.size() < 3 || text.front() != '%') return {};
    unsigned char byte = 0;
    const auto parsed = std::from_chars(text.data() + 1, text.data() + 3, byte, 16);
    if (parsed.ptr != text.data() + 3) return {};
    return static_cast<char>(byte);
}

std::string percentDecoded(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const auto escaped = escapedByte(text);
        plain += escaped.value_or(text.front());
        text.remove_prefix(escaped ? 3 : 1);
    }
    return plain;
}

/// Whether the form would cut something off.
bool hasOuterBlank(std::string_view text) { return text.starts_with(' ') || text.ends_with(' '); }

std::unexpected<std::string> notAnAddress(std::string_view text) {
    return std::unexpected(
        fmt::format("„{}“ ist keine Adresse wie sftp://benutzer@rechner:22/ordner.",
                    displayText(std::string(text))));
}

}  // namespace

bool isServerAddress(std::string_view text) { return text.starts_with(scheme); }

std::expected<ServerAddress, std::string> ServerAddress::parse(std::string_view text) {
    if (!isServerAddress(text)) return notAnAddress(text);
    const std::string_view rest = text.substr(scheme.size());
    const auto slash = std::min(rest.find('/'), rest.size());
    std::string_view authority = rest.substr(0, slash);
    ServerAddress address{.user = {}, .host = {}, .path = percentDecoded(rest.substr(slash))};
    if (const auto at = authority.rfind('@'); at != std::string_view::npos) {
        const std::string_view user = authority.substr(0, at);
        if (user.contains(':')) {
            return std::unexpected(
                "Ein Passwort gehört nicht in die Adresse: angemeldet wird nur "
                "mit einem Schlüssel.");
        }
        address.user = percentDecoded(user);
        authority.remove_prefix(at + 1);
    }
    address.host = authority;
    if (address.path.empty()) address.path = "/";
    const Url url = sftpURL(address.user, address.host, address.path);
    const bool isOddUser = !address.user.empty() && !isLoginName(address.user);
    // What names no port is taken for a part of the host.
    if (isOddUser || hasOuterBlank(address.user) || !isHostName(url.host) ||
        hasOuterBlank(address.path) || hasControlCharacters(address.path)) {
        return notAnAddress(text);
    }
    if (auto reason = objectionToServersFolder(address.path))
        return std::unexpected(std::move(*reason));
    return address;
}

}  // namespace bildkurier
