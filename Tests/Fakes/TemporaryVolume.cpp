// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TemporaryVolume.h"

#include "PrivateMounts.h"
#include "ProgramCall.h"

#include <filesystem>
#include <utility>

namespace bildkurier {

TemporaryVolume::TemporaryVolume(std::uint64_t bytes) {
    mount({"-t", "tmpfs", "-o", "size=" + std::to_string(bytes), "tmpfs"});
}

TemporaryVolume::TemporaryVolume(std::uint64_t bytes, std::vector<std::string> format) {
    const std::string image = around_.write("image", "");
    std::filesystem::resize_file(image, bytes);
    format.push_back(image);
    if (succeeds(std::move(format))) mount({"-o", "loop", image});
}

TemporaryVolume::~TemporaryVolume() {
    if (mounted_) succeeds({"umount", path()});
}

std::string TemporaryVolume::write(const std::string& relative, std::string_view contents) const {
    return around_.write("volume/" + relative, contents);
}

void TemporaryVolume::mount(std::vector<std::string> how) {
    how.insert(how.begin(), "mount");
    how.push_back(around_.makeFolder("volume"));
    mounted_ = mountPrivately() && succeeds(std::move(how));
}

}  // namespace bildkurier
