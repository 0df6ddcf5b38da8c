// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdlib>
#include <filesystem>

namespace bildkurier {

/// Where the answers of a real camera lie that were recorded once, and its pictures; they are not
/// part of this project, and may be missing.
inline std::filesystem::path recordings() {
    const char* named = std::getenv("BILDKURIER_RECORDINGS");
    return named == nullptr ? RECORDINGS : named;
}

inline bool areThereRecordings() {
    return std::filesystem::exists(recordings() / "sx200-2530.umockdev");
}

}  // namespace bildkurier
