// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpOutput.h"

#include "ParsedNumber.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <ranges>

namespace bildkurier {
namespace {

/// Takes the next word and the one blank behind it off the front of `line`. Empty at the end.
std::string_view takeWord(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    const auto word = line.substr(0, line.find(' '));
    line.remove_prefix(std::min(word.size() + 1, line.size()));
    return word;
}

bool isMonth(std::string_view word) {
    static constexpr std::array months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                       "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return std::ranges::find(months, word) != months.end();
}

/// Digits only, and a colon where it is the time of a day.
bool isTimeOrYear(std::string_view word) {
    return !word.empty() && word.find_first_not_of("0123456789:") == std::string_view::npos;
}

/// What comes behind owner and group in a listing.
struct SizeDateAndPath {
    std::optional<std::int64_t> size;
    bool hasDate;  ///< where it is to be
    std::string_view path;
};

SizeDateAndPath sizeDateAndPath(std::string_view text) {
    const auto size = takeWord(text);
    const auto month = takeWord(text);
    const auto day = takeWord(text);
    const auto time = takeWord(text);
    return {parsedNumber<std::int64_t>(size),
            isMonth(month) && parsedNumber<int>(day) && isTimeOrYear(time), text};
}

bool isOctal(char c) { return c >= '0' && c <= '7'; }

/// Whether `text` begins with a byte from 0x80 on as the client escapes it.
bool beginsWithEscape(std::string_view text) {
    return text.size() >= 4 && text[0] == '\\' && (text[1] == '2' || text[1] == '3') &&
           isOctal(text[2]) && isOctal(text[3]);
}

char escapedByte(std::string_view escape) {
    return static_cast<char>((escape[1] - '0') * 64 + (escape[2] - '0') * 8 + (escape[3] - '0'));
}

}  // namespace

std::optional<SftpListingLine> listingLine(std::string_view line) {
    const auto permissions = takeWord(line);
    if (permissions.size() != 10 || !std::string_view("-dl").contains(permissions[0])) return {};
    for (int ignored = 0; ignored < 3; ++ignored) takeWord(line);  // links, owner, group
    auto found = sizeDateAndPath(line);
    // Although it is told to show numbers, the client names owners and groups whose names the
    // server tells it. Those may have blanks in them: what is behind them has a date.
    for (auto rest = line; !found.hasDate && !rest.empty(); takeWord(rest)) {
        if (const auto shifted = sizeDateAndPath(rest); shifted.hasDate) found = shifted;
    }
    if (!found.size || *found.size < 0 || found.path.empty()) return {};
    return SftpListingLine{permissions[0] == 'd', *found.size, found.path};
}

std::vector<std::string_view> nonEmptyLines(std::string_view text) {
    std::vector<std::string_view> lines;
    for (const auto line : std::views::split(text, '\n'))
        if (!line.empty()) lines.emplace_back(line.begin(), line.end());
    return lines;
}

std::optional<std::int64_t> freeBytes(std::string_view output) {
    constexpr std::int64_t unit = 1024;
    for (auto line : std::views::reverse(nonEmptyLines(output))) {
        takeWord(line);  // size
        takeWord(line);  // used
        const auto available = parsedNumber<std::int64_t>(takeWord(line));
        if (!available) continue;
        if (*available < 0 || *available > std::numeric_limits<std::int64_t>::max() / unit)
            return {};
        return *available * unit;
    }
    return {};
}

std::string withoutEscapes(std::string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty()) {
        const bool isEscape = beginsWithEscape(text);
        bytes += isEscape ? escapedByte(text) : text.front();
        text.remove_prefix(isEscape ? 4 : 1);
    }
    return bytes;
}

}  // namespace bildkurier
