// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MountedImage.h"

#include "PrivateMounts.h"
#include "ProgramCall.h"

#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>
#include <vector>

namespace bildkurier {

namespace {

std::string newUuid() {
    std::string uuid;
    std::getline(std::ifstream("/proc/sys/kernel/random/uuid"), uuid);
    return uuid;
}

}  // namespace

MountedImage::MountedImage(const std::string& label, std::uint64_t bytes)
    : uuid_(newUuid()),
      image_(folder_.write("image", "")),
      point_(folder_.makeFolder("KARTE")),
      secondPoint_(folder_.makeFolder("KARTE-2")) {
    std::filesystem::resize_file(image_, bytes);
    if (!mountPrivately() ||
        !succeeds({"mkfs.ext4", "-q", "-F", "-L", label, "-U", uuid_, "-m", "0", image_}))
        throw std::runtime_error("no volume of its own");
    mount();
}

MountedImage::~MountedImage() {
    for (const std::string& point : {secondPoint_, point_}) ::umount2(point.c_str(), MNT_DETACH);
}

void MountedImage::mount() {
    if (!succeeds({"mount", "-o", "loop", image_, point_})) throw std::runtime_error("mount");
}

void MountedImage::mountAgain() {
    if (!succeeds({"mount", "--bind", point_, secondPoint_})) throw std::runtime_error("mount");
}

bool MountedImage::unmount() { return ::umount2(point_.c_str(), 0) == 0; }

bool MountedImage::unmountSecond() { return ::umount2(secondPoint_.c_str(), 0) == 0; }

void MountedImage::pull() {
    if (::umount2(point_.c_str(), MNT_DETACH) != 0) throw std::runtime_error("umount");
}

}  // namespace bildkurier
