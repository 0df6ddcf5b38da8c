// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>

namespace bildkurier {

/// Where a camera is plugged in, and what it says of itself to everybody. Texts are untrusted.
struct UsbPlace {
    std::string folder;     ///< in sysfs; its name is the way through the hubs, such as "1-1.5"
    std::string node;       ///< its device file
    std::string port;       ///< as libgphoto2 names it: "usb:001,011"; another at every plugging
    std::string vendor;     ///< hexadecimal number
    std::string product;    ///< hexadecimal number
    std::string name;       ///< for people
    std::string serial;     ///< empty where the device has none
    std::string mountName;  ///< by which the desktop's file manager mounts it; may be empty

    bool operator==(const UsbPlace&) const = default;
};

}  // namespace bildkurier
