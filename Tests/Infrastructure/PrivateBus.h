// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ChildProcess.h"
#include "EnvironmentVariable.h"
#include "LinePipe.h"
#include "TemporaryFolder.h"

#include <string>

namespace bildkurier {

/// A D-Bus daemon of the test's own, which this process and its children take for the system's
/// bus and for that of the session. Tests skip where none is installed.
class PrivateBus {
public:
    static bool isInstalled();

    PrivateBus();

private:
    TemporaryFolder folder_;
    std::string address_ = "unix:path=" + folder_.path("bus");
    EnvironmentVariable systemBus_{"DBUS_SYSTEM_BUS_ADDRESS", address_};
    EnvironmentVariable sessionBus_{"DBUS_SESSION_BUS_ADDRESS", address_};
    LinePipe printed_;
    ChildProcess daemon_;
};

}  // namespace bildkurier
