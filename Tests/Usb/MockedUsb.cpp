// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MockedUsb.h"

#include "MockedCamera.h"

#include <unistd.h>

#include <algorithm>

namespace bildkurier {

namespace {

constexpr auto wrapper = "/usr/bin/umockdev-run";

}  // namespace

ProgramCall mockedCall(const TemporaryFolder& user) {
    return {.path = wrapper,
            .arguments = {},
            .environment = {{"TZ", "Europe/Berlin"},
                            {"LC_ALL", "de_DE.UTF-8"},
                            {"XDG_RUNTIME_DIR", user.makeFolder("runtime")},
                            {"XDG_CACHE_HOME", user.path("cache")},
                            {"XDG_CONFIG_HOME", user.makeFolder("config")}}};
}

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
    return ::access(wrapper, X_OK) == 0;
#endif
}

bool MockedUsb::hasFileManager() {
    const auto programs = {"/usr/libexec/gvfsd-gphoto2", "/usr/bin/gio",
                           "/usr/bin/dbus-run-session"};
    return std::ranges::all_of(programs, [](auto path) { return ::access(path, X_OK) == 0; });
}

ProgramCall MockedUsb::calling(const std::vector<std::string>& command) const {
    ProgramCall call = mockedCall(user_);
    call.arguments = {"-d", description_, "--"};
    call.arguments.insert(call.arguments.end(), command.begin(), command.end());
    return call;
}

ProgramCall MockedUsb::call(const std::vector<std::string>& arguments) const {
    std::vector<std::string> command{BILDKURIER_CLI};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return calling(command);
}

ProgramCall MockedUsb::callWhileMounted(const std::vector<std::string>& arguments,
                                        const std::vector<std::string>& wrapper) const {
    std::vector<std::string> command{"dbus-run-session",
                                     "--",
                                     "sh",
                                     "-c",
                                     "gio mount 'gphoto2://[usb:001,001]/' >&2 && exec \"$@\"",
                                     "sh"};
    command.insert(command.end(), wrapper.begin(), wrapper.end());
    command.emplace_back(BILDKURIER_CLI);
    command.insert(command.end(), arguments.begin(), arguments.end());
    return calling(command);
}

}  // namespace bildkurier
