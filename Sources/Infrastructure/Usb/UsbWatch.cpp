// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbWatch.h"

#include "Destroy.h"

#include <libudev.h>
#include <poll.h>
#include <sys/eventfd.h>

#include <array>
#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

/// What udev tells of USB devices that come and go, once its rules have run.
class UdevEvents {
public:
    UdevEvents() {
        if (!udev_) return;
        monitor_.reset(udev_monitor_new_from_netlink(udev_.get(), "udev"));
        if (!monitor_) return;
        constexpr int receiveBytes = 1 << 20;
        udev_monitor_filter_add_match_subsystem_devtype(monitor_.get(), "usb", "usb_device");
        udev_monitor_set_receive_buffer_size(monitor_.get(), receiveBytes);
        if (udev_monitor_enable_receiving(monitor_.get()) < 0) monitor_.reset();
    }

    /// Invalid, which poll(2) passes over, where there is nothing to listen to.
    int descriptor() const { return monitor_ ? udev_monitor_get_fd(monitor_.get()) : -1; }

    void drain() const {
        while (udev_device* device = udev_monitor_receive_device(monitor_.get()))
            udev_device_unref(device);
    }

private:
    std::unique_ptr<udev, Destroy<udev_unref>> udev_{udev_new()};
    std::unique_ptr<udev_monitor, Destroy<udev_monitor_unref>> monitor_;
};

}  // namespace

UsbWatch::UsbWatch(UsbBus bus, std::chrono::milliseconds interval, Look look)
    : bus_(std::move(bus)),
      interval_(interval),
      look_(std::move(look)),
      end_(::eventfd(0, EFD_CLOEXEC)) {
    if (!end_) throw std::system_error(errno, std::generic_category(), "eventfd");
    thread_ = std::thread([this] { watch(); });
}

UsbWatch::~UsbWatch() {
    ::eventfd_write(end_.get(), 1);
    thread_.join();
}

void UsbWatch::watch() const {
    // Listening begins before the first look, so that no change falls in between.
    const UdevEvents events;
    constexpr int never = -1;
    // What udev has told may still show, or not yet: it is looked at once more.
    constexpr int settling = 500;
    constexpr std::chrono::milliseconds pause(10);
    const bool isTold = bus_.isWatched() && events.descriptor() >= 0;
    const int usual = isTold ? never : static_cast<int>(interval_.count());
    std::array<pollfd, 2> watched{{{.fd = events.descriptor(), .events = POLLIN, .revents = 0},
                                   {.fd = end_.get(), .events = POLLIN, .revents = 0}}};
    while (watched[1].revents == 0) {
        look_(bus_.cameras());
        const int timeout = watched[0].revents != 0 ? settling : usual;
        while (::poll(watched.data(), watched.size(), timeout) < 0)
            std::this_thread::sleep_for(pause);
        if (watched[0].revents != 0) events.drain();
    }
}

}  // namespace bildkurier
