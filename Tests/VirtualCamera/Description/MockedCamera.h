// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>

namespace bildkurier {

/// A camera at the first USB, as umockdev is to pretend it.
struct MockedCamera {
    std::string path = "/devices/pci0000:00/usb1/1-1";  ///< in sysfs, without "/sys"
    int number = 1;                                     ///< of its device file; below 10
    std::string vendor = "1209";
    std::string product = "0001";
    std::string name = "Testkamera";
    std::string serial = "S1001";

    std::string description() const {
        const std::string device = std::to_string(number);
        return "P: " + path + "\nN: bus/usb/001/00" + device +
               "\nE: DEVTYPE=usb_device\nE: SUBSYSTEM=usb\nE: ID_GPHOTO2=1\n" +
               attribute("busnum", "1") + attribute("devnum", device) +
               attribute("idVendor", vendor) + attribute("idProduct", product) +
               attribute("product", name) + attribute("serial", serial);
    }

private:
    static std::string attribute(const std::string& key, const std::string& value) {
        return "A: " + key + "=" + value + "\\n\n";
    }
};

}  // namespace bildkurier
