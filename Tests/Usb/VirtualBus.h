// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "EnvironmentVariable.h"
#include "TemporaryFolder.h"
#include "UsbBus.h"

#include <cstddef>
#include <map>
#include <string>

namespace bildkurier {

/// A USB without hardware, at which virtual cameras are plugged in and pulled. While it exists,
/// libgphoto2 sees no other. Make it before any thread.
class VirtualBus {
public:
    struct Device {
        std::string vendor = "1209";
        std::string product = "0001";
        std::string name = "Testkamera";
        std::string serial;  ///< as the USB shows it; may be empty
        /// What the driver of virtual cameras is told of it.
        std::map<std::string, std::string> settings;
    };

    /// As the program is to be told where cameras are.
    UsbBus bus() const { return UsbBus(folder(), folder_.path("nodes")); }
    /// Where they are, as in sysfs.
    std::string folder() const { return folder_.path("bus"); }

    /// Plugs a camera in at a place such as "1-1".
    void plugIn(const std::string& place, const Device& device);
    /// Plugs in again, as it was, what was pulled there.
    void plugInAgain(const std::string& place);
    void pull(const std::string& place) const;
    /// Pulls it if it is plugged in, and throws it away.
    void unplugForGood(const std::string& place) const;
    bool isPluggedIn(const std::string& place) const;
    /// Changes what the driver is told, which it heeds when it opens the camera the next time.
    void change(const std::string& place, const std::map<std::string, std::string>& settings) const;
    /// Lets users who are not this process's read what is on the bus.
    void showToEverybody() const;
    /// How often something was counted in a camera's folder, such as "openings".
    std::size_t count(const std::string& place, const std::string& what) const;
    /// The file by which a camera that is plugged in is held; locked, it is in use.
    std::string claimFile(const std::string& place) const;

private:
    std::string inDrawer(const std::string& place) const { return folder_.path("drawer/" + place); }
    std::string onBus(const std::string& place) const { return folder_.path("bus/" + place); }

    TemporaryFolder folder_;
    EnvironmentVariable drivers_{"IOLIBS", VIRTUAL_CAMERA_DRIVERS};
    EnvironmentVariable cameras_{"VIRTUAL_CAMERAS", folder_.makeFolder("bus")};
    int devices_ = 0;  ///< so many were plugged in; each has a new number
};

}  // namespace bildkurier
