// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstddef>
#include <string>

namespace bildkurier {

/// A volume of `bytes` bytes in memory, mounted on `folder` for this process and its children.
class MemoryVolume {
public:
    MemoryVolume(std::string folder, std::size_t bytes);
    MemoryVolume(const MemoryVolume&) = delete;
    MemoryVolume& operator=(const MemoryVolume&) = delete;
    ~MemoryVolume();

    /// False where this process may not mount.
    bool isMounted() const { return mounted_; }

private:
    std::string folder_;
    bool mounted_;
};

}  // namespace bildkurier
