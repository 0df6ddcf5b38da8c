// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ProgramCall.h"
#include "VirtualBus.h"

#include <string>
#include <vector>

namespace bildkurier {

/// A virtual camera at what a program takes for the system's own USB, since udev and sysfs are
/// mocked for it.
class MockedUsb {
public:
    explicit MockedUsb(const VirtualBus::Device& device);

    /// Whether it can be done here; nothing can be preloaded into a program with a sanitizer.
    static bool isPossible();

    /// bildkurier-cli, as a user of its own runs it at this USB.
    ProgramCall call(const std::vector<std::string>& arguments) const;

private:
    VirtualBus usb_;
    TemporaryFolder user_;
    std::string description_;
};

}  // namespace bildkurier
