// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Demand.h"
#include "SFTPFileStore.h"

#include <cstddef>
#include <cstdint>

using namespace bildkurier;

// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const auto& entry : SFTPFileStore::entries({reinterpret_cast<const char*>(data), size})) {
        demand(entry.size >= 0);
        demand(!entry.name.empty());
        demand(entry.name == "/" || !entry.name.contains('/'));
        demand(!entry.name.contains('\n'));
    }
    return 0;
}
