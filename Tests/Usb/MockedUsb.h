// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ProgramCall.h"
#include "VirtualBus.h"

#include <string>
#include <vector>

namespace bildkurier {

/// A program to be run by umockdev, as a user whose folders are below `user` runs it.
ProgramCall mockedCall(const TemporaryFolder& user);

/// A virtual camera at what a program takes for the system's own USB, since udev and sysfs are
/// mocked for it.
class MockedUsb {
public:
    explicit MockedUsb(const VirtualBus::Device& device);

    /// Whether it can be done here; nothing can be preloaded into a program with a sanitizer.
    static bool isPossible();

    /// Whether a desktop's file manager can be had that mounts cameras.
    static bool hasFileManager();

    /// bildkurier-cli, as a user of its own runs it at this USB.
    ProgramCall call(const std::vector<std::string>& arguments) const;
    /// The same, called by `wrapper`, on a desktop whose file manager has mounted the camera.
    ProgramCall callWhileMounted(const std::vector<std::string>& arguments,
                                 const std::vector<std::string>& wrapper = {}) const;

    const VirtualBus& usb() const { return usb_; }

private:
    ProgramCall calling(const std::vector<std::string>& command) const;

    VirtualBus usb_;
    TemporaryFolder user_;
    std::string description_;
};

}  // namespace bildkurier
