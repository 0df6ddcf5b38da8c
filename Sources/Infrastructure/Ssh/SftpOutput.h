// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {

// What the sftp client prints. All of it is untrusted: it quotes the server.

/// One line of a long listing. The view points into the line.
struct SftpListingLine {
    bool isDirectory;
    std::int64_t size;      ///< bytes, not negative
    std::string_view path;  ///< as it was asked for, with the name behind it
};

/// Absent when `line` is no line of a listing.
std::optional<SftpListingLine> listingLine(std::string_view line);

/// The views point into `text`.
std::vector<std::string_view> nonEmptyLines(std::string_view text);

/// Free bytes by the answer to "df"; absent when it names none that can be true.
std::optional<std::int64_t> freeBytes(std::string_view output);

/// `text` with the bytes that the client shows as "\ooo", because the locale cannot print
/// them: umlauts where there is no UTF-8.
std::string withoutEscapes(std::string_view text);

}  // namespace bildkurier
