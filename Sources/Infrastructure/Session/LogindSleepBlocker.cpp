// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "LogindSleepBlocker.h"

#include <fcntl.h>
#include <systemd/sd-bus.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <utility>

namespace bildkurier {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience(1);

using Bus = std::unique_ptr<sd_bus, decltype([](sd_bus* bus) { sd_bus_close_unref(bus); })>;
using Request = std::unique_ptr<sd_bus_slot, decltype(&sd_bus_slot_unref)>;

struct Answer {
    bool arrived = false;
    FileDescriptor descriptor;
};

Bus systemBus() {
    sd_bus* bus = nullptr;
    sd_bus_open_system(&bus);
    return Bus(bus);
}

int take(sd_bus_message* reply, void* into, sd_bus_error* /*error*/) {
    auto& answer = *static_cast<Answer*>(into);
    answer.arrived = true;
    int descriptor = -1;
    if (sd_bus_message_is_method_error(reply, nullptr) == 0 &&
        sd_bus_message_read(reply, "h", &descriptor) > 0)
        answer.descriptor = FileDescriptor(::fcntl(descriptor, F_DUPFD_CLOEXEC, 0));
    return 0;
}

/// Invalid when refused. Asks without blocking: where the bus hangs, a plain call would wait for
/// half a minute.
FileDescriptor inhibit(sd_bus* bus, const char* what, const std::string& reason,
                       Clock::time_point deadline) {
    Answer answer;
    sd_bus_slot* slot = nullptr;
    sd_bus_call_method_async(bus, &slot, "org.freedesktop.login1", "/org/freedesktop/login1",
                             "org.freedesktop.login1.Manager", "Inhibit", take, &answer, "ssss",
                             what, "Bildkurier", reason.c_str(), "block");
    const Request request(slot, sd_bus_slot_unref);
    while (request && !answer.arrived) {
        const auto left = std::chrono::ceil<std::chrono::microseconds>(deadline - Clock::now());
        const int progress = sd_bus_process(bus, nullptr);
        if (progress < 0 || left.count() <= 0) break;
        if (progress == 0) sd_bus_wait(bus, static_cast<std::uint64_t>(left.count()));
    }
    return std::move(answer.descriptor);
}

/// Invalid without bus or logind.
FileDescriptor inhibitor(const std::string& reason) {
    const auto deadline = Clock::now() + patience;
    const Bus bus = systemBus();
    if (!bus) return {};
    auto found = inhibit(bus.get(), "idle:sleep", reason, deadline);
    // Users without a session of their own may forbid idling, but not sleep.
    return found ? std::move(found) : inhibit(bus.get(), "idle", reason, deadline);
}

}  // namespace

void LogindSleepBlocker::begin(const std::string& reason) {
    if (inhibitor_) return;
    inhibitor_ = std::make_shared<FileDescriptor>();
    background_.run([wanted = std::weak_ptr(inhibitor_), reason] {
        if (wanted.expired()) return;
        auto found = inhibitor(reason);
        // Closed at once where it came too late.
        if (const auto kept = wanted.lock()) *kept = std::move(found);
    });
}

void LogindSleepBlocker::end() { inhibitor_.reset(); }

}  // namespace bildkurier
