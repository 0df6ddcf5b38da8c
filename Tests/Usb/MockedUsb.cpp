// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MockedUsb.h"

#include "MockedCamera.h"

#include <unistd.h>

namespace bildkurier {

namespace {

constexpr auto mocker = "/usr/bin/umockdev-run";

}  // namespace

MockedUsb::MockedUsb(const VirtualBus::Device& device) {
    usb_.plugIn("1-1", device);
    const MockedCamera camera{.vendor = device.vendor,
                              .product = device.product,
                              .name = device.name,
                              .serial = device.serial};
    description_ = user_.write("usb.umockdev", camera.description());
}

bool MockedUsb::isPossible() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return false;
#else
    return ::access(mocker, X_OK) == 0;
#endif
}

ProgramCall MockedUsb::call(const std::vector<std::string>& arguments) const {
    ProgramCall call{.path = mocker,
                     .arguments = {"-d", description_, "--", BILDKURIER_CLI},
                     .environment = {{"TZ", "Europe/Berlin"},
                                     {"LC_ALL", "de_DE.UTF-8"},
                                     {"XDG_RUNTIME_DIR", user_.makeFolder("runtime")},
                                     {"XDG_CACHE_HOME", user_.path("cache")},
                                     {"XDG_CONFIG_HOME", user_.makeFolder("config")}}};
    call.arguments.insert(call.arguments.end(), arguments.begin(), arguments.end());
    return call;
}

}  // namespace bildkurier
