// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "UsbBus.h"

#include <chrono>
#include <functional>
#include <thread>
#include <vector>

namespace bildkurier {

/// Watches the bus on a thread of its own: by what udev tells, and where no udev runs by
/// looking again and again.
class UsbWatch {
public:
    /// Receives what is plugged in, at first and whenever something may have changed.
    using Look = std::function<void(const std::vector<UsbPlace>&)>;

    UsbWatch(UsbBus bus, std::chrono::milliseconds interval, Look look);
    UsbWatch(const UsbWatch&) = delete;
    UsbWatch& operator=(const UsbWatch&) = delete;
    /// Waits for a look under way.
    ~UsbWatch();

private:
    void watch() const;

    UsbBus bus_;
    std::chrono::milliseconds interval_;
    Look look_;
    FileDescriptor end_;
    std::thread thread_;
};

}  // namespace bildkurier
