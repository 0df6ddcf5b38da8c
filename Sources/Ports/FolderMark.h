// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <optional>

namespace bildkurier {

/// What tells a folder of this computer from another one that comes to its place. The numbers are
/// the system's.
struct FolderMark {
    std::uint64_t device = 0;
    std::uint64_t folder = 0;            ///< on the device; 0 where it may get another number
    std::optional<std::uint64_t> mount;  ///< absent where mounts have no lasting numbers

    bool operator==(const FolderMark&) const = default;
};

}  // namespace bildkurier
