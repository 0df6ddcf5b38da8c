// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdlib>
#include <string>

namespace bildkurier {

/// The variable's value; empty where it is not set.
inline std::string environmentValue(const char* name) {
    // Nothing changes what is read here. NOLINTNEXTLINE(concurrency-mt-unsafe)
    const char* value = std::getenv(name);
    return value ? value : "";
}

}  // namespace bildkurier
