// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpKeyWalk.h"

#include "Demand.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

using namespace bildkurier;

// The server answers every level with the same text.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view output(reinterpret_cast<const char*>(data), size);
    SftpKeyWalk walk("/p");
    int levels = 0;
    while (walk.goesOn()) {
        demand(++levels <= 8);
        const auto commands = walk.commands();
        demand(!objection(commands));
        for (const auto& command : commands) demand(command.starts_with("-ls -ln \"/p"));
        walk.read(output);
    }
    for (const auto& key : walk.keys()) {
        demand(!key.contains('/') && !key.contains('\n'));
        demand(!key.starts_with('.') && key.rfind('|') > 0);
    }
    return 0;
}
