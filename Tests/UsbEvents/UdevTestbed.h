// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <umockdev-1.0/umockdev.h>

#include <memory>
#include <string>
#include <vector>

namespace bildkurier {

/// Stands in for udev, sysfs and device files within this process, if umockdev-wrapper has
/// started it.
class UdevTestbed {
public:
    UdevTestbed();
    UdevTestbed(const UdevTestbed&) = delete;
    UdevTestbed& operator=(const UdevTestbed&) = delete;
    ~UdevTestbed();

    /// Whether umockdev-wrapper has started this process; if not, the actual USB shows.
    bool isInPlace() const;

    /// Plugs in the devices of a description; `path` is that of the first in sysfs.
    void plugIn(const std::string& description, const std::string& path);
    /// What the device at `node` says when it is spoken to.
    void answer(const std::string& node, const std::string& recording);
    /// Pulls the first device.
    void pull();

private:
    UMockdevTestbed* testbed_;
    std::string path_;
};

}  // namespace bildkurier
