// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MockLogind.h"

#include "FileDescriptor.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string_view>

namespace bildkurier {

namespace {

constexpr const char* manager = "org.freedesktop.login1.Manager";

/// What the callbacks of the process know. It ends with the process.
struct Desk {
    MockLogind::Manner manner;
    const LinePipe& events;
    sd_event* loop = nullptr;
};

int checked(int result) {
    if (result < 0) throw std::runtime_error("D-Bus");
    return result;
}

int noteRelease(sd_event_source* inhibitor, int descriptor, std::uint32_t /*events*/, void* desk) {
    static_cast<Desk*>(desk)->events.write("released");
    sd_event_source_disable_unref(inhibitor);
    return ::close(descriptor);
}

/// Like logind: a pipe, whose writing end is given away.
int grant(Desk& desk, sd_bus_message* request) {
    std::array<int, 2> ends{};
    checked(::pipe2(ends.data(), O_CLOEXEC));
    const FileDescriptor given(ends[1]);
    sd_event_source* inhibitor = nullptr;
    checked(sd_event_add_io(desk.loop, &inhibitor, ends[0], 0, noteRelease, &desk));
    return sd_bus_reply_method_return(request, "h", given.get());
}

int answer(sd_bus_message* request, void* context, sd_bus_error* error) {
    if (sd_bus_message_is_method_call(request, manager, "Inhibit") == 0) return 0;
    auto& desk = *static_cast<Desk*>(context);
    const char* what = nullptr;
    const char* who = nullptr;
    const char* why = nullptr;
    const char* mode = nullptr;
    checked(sd_bus_message_read(request, "ssss", &what, &who, &why, &mode));
    desk.events.write(fmt::format("{}|{}|{}|{}", what, who, why, mode));
    if (desk.manner == MockLogind::Manner::isSilent) return 1;
    const bool wantsSleep = std::string_view(what).find("sleep") != std::string_view::npos;
    if (desk.manner == MockLogind::Manner::deniesSleep && wantsSleep)
        return sd_bus_error_set(error, SD_BUS_ERROR_ACCESS_DENIED, "Permission denied");
    return grant(desk, request);
}

bool serve(MockLogind::Manner manner, const LinePipe& events) {
    Desk desk{.manner = manner, .events = events};
    sd_bus* bus = nullptr;
    checked(sd_event_default(&desk.loop));
    checked(sd_bus_open_system(&bus));
    checked(sd_bus_attach_event(bus, desk.loop, SD_EVENT_PRIORITY_NORMAL));
    checked(sd_bus_add_object(bus, nullptr, "/org/freedesktop/login1", answer, &desk));
    checked(sd_bus_request_name(bus, "org.freedesktop.login1", 0));
    events.write("ready");
    return sd_event_loop(desk.loop) == 0;
}

}  // namespace

MockLogind::MockLogind(Manner manner) : process_([&] { return serve(manner, events_); }) {
    if (nextEvent() != "ready") throw std::runtime_error("logind");
}

}  // namespace bildkurier
