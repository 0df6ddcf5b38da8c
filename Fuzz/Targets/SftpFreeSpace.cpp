// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Demand.h"
#include "SftpOutput.h"

#include <cstddef>
#include <cstdint>

using namespace bildkurier;

// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = freeBytes({reinterpret_cast<const char*>(data), size});
    demand(!bytes || (*bytes >= 0 && *bytes % 1024 == 0));
    return 0;
}
