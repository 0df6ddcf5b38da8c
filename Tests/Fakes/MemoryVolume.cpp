// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MemoryVolume.h"

#include "PrivateMounts.h"

#include <sys/mount.h>

#include <utility>

namespace bildkurier {

MemoryVolume::MemoryVolume(std::string folder, std::size_t bytes) : folder_(std::move(folder)) {
    const std::string options = "size=" + std::to_string(bytes);
    mounted_ = mountPrivately() &&
               mount("bildkurier-test", folder_.c_str(), "tmpfs", 0, options.c_str()) == 0;
}

MemoryVolume::~MemoryVolume() {
    if (mounted_) umount2(folder_.c_str(), MNT_DETACH);
}

}  // namespace bildkurier
