// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "TemporaryFolder.h"

#include <cstdint>
#include <string>

namespace bildkurier {

/// A volume of its own that can be plugged in and pulled: an ext4 image on a loop device.
class MountedImage {
public:
    /// Throws where this cannot be had: for lack of rights, of loop devices or of mkfs.ext4.
    explicit MountedImage(const std::string& label, std::uint64_t bytes = 8 << 20);
    MountedImage(const MountedImage&) = delete;
    MountedImage& operator=(const MountedImage&) = delete;
    ~MountedImage();

    void mount();
    /// Shows the volume at a second place, too.
    void mountAgain();
    /// Whether nothing kept it busy.
    bool unmount();
    bool unmountSecond();
    /// Also while it is busy: whoever has a file open can still read it, as from a cache.
    void pull();

    const std::string& uuid() const { return uuid_; }
    const std::string& point() const { return point_; }
    const std::string& secondPoint() const { return secondPoint_; }
    /// Of a file or folder while it is mounted.
    std::string path(const std::string& relative) const { return point_ + "/" + relative; }

private:
    TemporaryFolder folder_;
    std::string uuid_;
    std::string image_;
    std::string point_;
    std::string secondPoint_;
};

}  // namespace bildkurier
