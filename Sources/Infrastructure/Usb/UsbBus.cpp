// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbBus.h"

#include "Destroy.h"
#include "ParsedNumber.h"

#include <fmt/format.h>
#include <libudev.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

using Udev = std::unique_ptr<udev, Destroy<udev_unref>>;
using UdevDevice = std::unique_ptr<udev_device, Destroy<udev_device_unref>>;

/// One line; empty where there is no such attribute.
std::string attribute(const fs::path& folder, const char* name) {
    std::ifstream file(folder / name);
    std::string text;
    std::getline(file, text);
    const auto isBlank = [](char c) { return c == ' ' || c == '\n'; };
    while (!text.empty() && isBlank(text.back())) text.pop_back();
    return text;
}

std::vector<fs::path> foldersIn(const fs::path& folder) {
    std::vector<fs::path> found;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        found.push_back(entry->path());
    }
    std::ranges::sort(found);
    return found;
}

/// Class, subclass and protocol of a still image interface.
bool isStillImageInterface(const fs::path& folder) {
    return attribute(folder, "bInterfaceClass") == "06" &&
           attribute(folder, "bInterfaceSubClass") == "01" &&
           attribute(folder, "bInterfaceProtocol") == "01";
}

/// What udev has found out about a device.
class UdevFacts {
public:
    UdevFacts(udev* context, const fs::path& folder) {
        std::error_code error;
        const fs::path resolved = fs::canonical(folder, error);
        if (context == nullptr || error) return;
        device_.reset(udev_device_new_from_syspath(context, resolved.c_str()));
    }

    std::string operator[](const char* name) const {
        const char* value = device_ ? udev_device_get_property_value(device_.get(), name) : nullptr;
        return value == nullptr ? "" : value;
    }

    /// Its rules say who may open the device; until they have run, nobody should try.
    bool areDue() const { return device_ && udev_device_get_is_initialized(device_.get()) == 0; }

private:
    UdevDevice device_;
};

bool isCamera(const fs::path& folder, const UdevFacts& facts) {
    return facts["ID_GPHOTO2"] == "1" || facts["ID_USB_INTERFACES"].contains(":060101:") ||
           std::ranges::any_of(foldersIn(folder), isStillImageInterface);
}

}  // namespace

UsbBus::UsbBus(std::string devices, std::string nodes)
    : devices_(std::move(devices)), nodes_(std::move(nodes)) {}

bool UsbBus::isWatched() const {
    return devices_ == systemDevices && ::access("/run/udev/control", F_OK) == 0;
}

std::vector<UsbPlace> UsbBus::cameras() const {
    const Udev context(udev_new());
    const bool waitsForUdev = isWatched();
    std::vector<UsbPlace> places;
    for (const fs::path& folder : foldersIn(devices_)) {
        const auto bus = parsedNumber<int>(attribute(folder, "busnum"));
        const auto device = parsedNumber<int>(attribute(folder, "devnum"));
        if (!bus || !device) continue;
        const UdevFacts facts(context.get(), folder);
        if ((waitsForUdev && facts.areDue()) || !isCamera(folder, facts)) continue;
        places.push_back({.folder = folder,
                          .node = fmt::format("{}/{:03}/{:03}", nodes_, *bus, *device),
                          .port = fmt::format("usb:{:03},{:03}", *bus, *device),
                          .vendor = attribute(folder, "idVendor"),
                          .product = attribute(folder, "idProduct"),
                          .name = attribute(folder, "product"),
                          .serial = attribute(folder, "serial"),
                          .mountName = facts["ID_SERIAL"]});
    }
    return places;
}

bool UsbBus::isThere(const UsbPlace& place) const {
    const auto bus = parsedNumber<int>(attribute(place.folder, "busnum"));
    const auto device = parsedNumber<int>(attribute(place.folder, "devnum"));
    return bus && device && fmt::format("usb:{:03},{:03}", *bus, *device) == place.port;
}

}  // namespace bildkurier
