// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "UsbPlace.h"

#include <string>
#include <vector>

namespace bildkurier {

/// Reads which cameras are plugged in, as sysfs shows them and udev knows them. Any thread.
class UsbBus {
public:
    /// The system's own.
    UsbBus() = default;
    /// `devices` is the bus's folder in sysfs, `nodes` that of the device files.
    UsbBus(std::string devices, std::string nodes);

    /// Whatever speaks the picture transfer protocol, and what udev says libgphoto2 knows.
    std::vector<UsbPlace> cameras() const;

    /// Whether udev tells when something on it has changed.
    bool isWatched() const;

    /// Whether the very device that was found is still plugged in.
    bool isThere(const UsbPlace& place) const;

private:
    static constexpr auto systemDevices = "/sys/bus/usb/devices";

    std::string devices_ = systemDevices;
    std::string nodes_ = "/dev/bus/usb";
};

}  // namespace bildkurier
