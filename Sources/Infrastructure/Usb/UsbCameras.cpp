// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbCameras.h"

#include "CameraWorker.h"
#include "DesktopMounts.h"
#include "Guard.h"
#include "Mailbox.h"
#include "UsbDevice.h"
#include "UsbIdentity.h"
#include "UsbWatch.h"

#include <algorithm>
#include <chrono>
#include <exception>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {

struct UsbCameras::Impl {
    using Look = UsbWatch::Look;

    MainQueue& main;
    Options options;
    std::shared_ptr<Mailbox> mailbox = std::make_shared<Mailbox>(main);

    std::weak_ptr<BrowserSink> sink;
    std::vector<std::shared_ptr<UsbDevice>> devices;  ///< also those not yet identified
    std::vector<std::weak_ptr<CameraWorker>> workers;
    /// Of cameras that told it, by their places: held by another program, they tell it no more.
    std::map<std::string, std::string> serials;
    std::set<std::string> lostPorts;  ///< unplugged before the system noticed
    bool hasLooked = false;
    bool hasReported = false;
    Handle patience;
    Guard events;
    std::optional<UsbWatch> watch;  ///< destroyed first: it uses all the others

    void start();
    void waitForFacts();
    void looked(const std::vector<UsbPlace>& places);
    void added(const UsbPlace& place);
    void showAsSeen(const UsbPlace& place);
    void identified(const std::string& port, DeviceFacts facts);
    void removed(const std::string& port);
    void reportIfComplete();
    void report();
    void end();

    auto find(const std::string& port) {
        return std::ranges::find(devices, port, [](const auto& d) { return d->place().port; });
    }
};

void UsbCameras::Impl::start() {
    const Look show = events([this](const std::vector<UsbPlace>& places) { looked(places); });
    waitForFacts();
    watch.emplace(options.bus, options.timing.scan,
                  [&queue = main, show, before = std::optional<std::vector<UsbPlace>>()](
                      const std::vector<UsbPlace>& places) mutable {
                      if (before == places) return;
                      before = places;
                      queue.post([show, places] { show(places); });
                  });
}

/// A camera that does not say in time who it is shows by what everybody can see of it.
void UsbCameras::Impl::waitForFacts() {
    patience = main.after(
        options.timing.identifying, events([this] {
            for (const auto& device : devices) {
                if (device->isIdentified()) continue;
                main.post(events([this, place = device->place()] { showAsSeen(place); }));
            }
            main.post(events([this] { report(); }));
        }));
}

/// Each change is a task of its own on the main queue, so that any of them may destroy this.
void UsbCameras::Impl::looked(const std::vector<UsbPlace>& places) {
    const auto isThere = [&places](const std::string& port) {
        return std::ranges::find(places, port, &UsbPlace::port) != places.end();
    };
    std::erase_if(lostPorts, [&](const std::string& port) { return !isThere(port); });
    for (const auto& device : devices) {
        const std::string port = device->place().port;
        if (!isThere(port)) main.post(events([this, port] { removed(port); }));
    }
    for (const UsbPlace& place : places) {
        if (!lostPorts.contains(place.port) && find(place.port) == devices.end()) added(place);
    }
    hasLooked = true;
    main.post(events([this] { reportIfComplete(); }));
}

void UsbCameras::Impl::added(const UsbPlace& place) {
    const std::string port = place.port;
    const auto worker = std::make_shared<CameraWorker>(
        place, options.bus, options.timing, options.release, mailbox,
        CameraWorker::Events{.identified = events([this, port](DeviceFacts facts) {
                                 identified(port, std::move(facts));
                             }),
                             .lost = events([this, port] {
                                 lostPorts.insert(port);
                                 removed(port);
                             })});
    try {
        worker->start();
    } catch (const std::system_error&) {
        // Without a thread there is no talking to the camera; plugged in again it may get one.
        return;
    }
    std::erase_if(workers, [](const auto& known) { return known.expired(); });
    workers.push_back(worker);
    devices.push_back(std::make_shared<UsbDevice>(place, worker));
    if (hasReported) waitForFacts();
}

/// Unless it has said meanwhile who it is.
void UsbCameras::Impl::showAsSeen(const UsbPlace& place) {
    const auto found = find(place.port);
    if (found != devices.end() && !(*found)->isIdentified())
        identified(place.port, factsAtUsb(place));
}

void UsbCameras::Impl::identified(const std::string& port, DeviceFacts facts) {
    const auto found = find(port);
    if (found == devices.end()) return;
    const std::string told = facts.serial.value_or("");
    std::string& known = serials[facts.persistentId.value_or("")];
    if (facts.isComplete) known = told;
    if (told.empty()) facts.serial = known;
    const auto& device = *found;
    const bool isNew = !device->isIdentified();
    const DeviceFacts before = device->facts();
    device->identified(std::move(facts));
    const DeviceFacts now = device->facts();
    if (isNew) main.post(events([this] { reportIfComplete(); }));
    const auto receiver = sink.lock();
    if (!receiver) return;
    if (isNew) {
        receiver->deviceAdded(device);
    } else if (now.name != before.name || now.serial != before.serial ||
               now.isComplete != before.isComplete) {
        receiver->deviceIdentified(std::shared_ptr(device));
    }
}

void UsbCameras::Impl::removed(const std::string& port) {
    const auto found = find(port);
    if (found == devices.end()) return;
    const auto device = std::move(*found);
    devices.erase(found);
    device->end(UsbSession::End::Gone);
    main.post(events([this] { reportIfComplete(); }));
    if (!device->isIdentified()) return;
    if (const auto receiver = sink.lock()) receiver->deviceRemoved(device);
}

void UsbCameras::Impl::reportIfComplete() {
    if (hasLooked && std::ranges::all_of(devices, &UsbDevice::isIdentified)) report();
}

void UsbCameras::Impl::report() {
    patience.reset();
    if (std::exchange(hasReported, true)) return;
    if (const auto receiver = sink.lock()) receiver->attachedDevicesReported();
}

void UsbCameras::Impl::end() {
    watch.reset();
    for (const auto& device : devices) device->end(UsbSession::End::Closed);
    const auto deadline = std::chrono::steady_clock::now() + options.timing.ending;
    for (const auto& known : workers) {
        if (const auto worker = known.lock()) worker->waitUntilEnded(deadline);
    }
    mailbox->close();
}

UsbCameras::UsbCameras(MainQueue& main, Options options)
    : impl_(new Impl{.main = main, .options = std::move(options)}) {
    if (impl_->options.release) return;
    const auto time = impl_->options.timing.answer;
    impl_->options.release = [time](const UsbPlace& place, const UsbSession& session) {
        releaseFromDesktop(place, session, time);
    };
}

UsbCameras::~UsbCameras() { impl_->end(); }

void UsbCameras::start(std::weak_ptr<BrowserSink> sink) {
    impl_->sink = std::move(sink);
    impl_->start();
}

}  // namespace bildkurier
