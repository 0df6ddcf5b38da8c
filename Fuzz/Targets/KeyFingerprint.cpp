// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "AppSSHKeyring.h"
#include "Demand.h"

#include <cstddef>
#include <cstdint>

using namespace bildkurier;

// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto shown = AppSSHKeyring::fingerprint({reinterpret_cast<const char*>(data), size});
    if (!shown) return 0;
    demand(shown->starts_with("SHA256:"));
    demand(!shown->contains('\n'));
    return 0;
}
