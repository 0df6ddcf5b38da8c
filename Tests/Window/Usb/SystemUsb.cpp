// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SystemUsb.h"

#include <sys/mount.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <system_error>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

constexpr auto sysfs = "/sys";
constexpr auto udevFolder = "/run/udev";

void cover(const char* place, const std::string& folder) {
    if (fs::exists(place) && ::mount(folder.c_str(), place, nullptr, MS_BIND, nullptr) != 0)
        throw std::system_error(errno, std::generic_category(), place);
}

}  // namespace

SystemUsb::SystemUsb() {
    const std::string usb = folder_.makeFolder("sys/bus/usb");
    fs::create_directory_symlink(bus.folder(), usb + "/devices");
    cover(sysfs, folder_.path("sys"));
    cover(udevFolder, folder_.makeFolder("udev"));
}

SystemUsb::~SystemUsb() {
    for (const char* place : {sysfs, udevFolder}) ::umount2(place, MNT_DETACH);
}

}  // namespace bildkurier
