// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Demand.h"
#include "SFTPFileStore.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

using namespace bildkurier;

namespace {

/// What the client reads between quotes: a backslash protects one of `special` behind it, and is
/// a part of the name before anything else.
std::string readByTheClient(std::string_view quoted, std::string_view special) {
    demand(quoted.size() >= 2 && quoted.front() == '"' && quoted.back() == '"');
    quoted = quoted.substr(1, quoted.size() - 2);
    std::string text;
    for (std::size_t at = 0; at < quoted.size(); ++at) {
        demand(quoted[at] != '"');
        if (quoted[at] == '\\') demand(++at < quoted.size() && special.contains(quoted[at]));
        text += quoted[at];
    }
    return text;
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view path(reinterpret_cast<const char*>(data), size);
    demand(readByTheClient(SFTPFileStore::quoted(path), "\"\\") == path);
    demand(readByTheClient(SFTPFileStore::quotedForListing(path), "\"\\{}") == path);
    for (const auto& command : SFTPFileStore::makeDirectories(path))
        demand(command.starts_with("-mkdir \"/") && command.ends_with('"'));
    return 0;
}
