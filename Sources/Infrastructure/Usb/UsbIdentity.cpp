// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbIdentity.h"

#include "FileName.h"

#include <fmt/format.h>

#include <filesystem>

namespace bildkurier {

std::string actualSerial(const std::string& serial) {
    constexpr std::size_t shortest = 5;
    const bool isPlaceholder = serial.size() < shortest || serial == "0123456789ABCDEF" ||
                               serial.find_first_not_of('0') == std::string::npos;
    return isPlaceholder ? "" : serial;
}

bool isControlledByAsking(const UsbPlace& place) {
    constexpr auto canon = "04a9";
    return place.vendor == canon;
}

DeviceFacts factsAtUsb(const UsbPlace& place) {
    const std::string serial = actualSerial(place.serial);
    return {.name = place.name.empty() ? "Kamera" : displayText(place.name),
            .serial = serial,
            .persistentId = fmt::format("usb:{}:{}:{}", place.vendor, place.product,
                                        std::filesystem::path(place.folder).filename().string()),
            .isComplete = !serial.empty() || isControlledByAsking(place)};
}

}  // namespace bildkurier
