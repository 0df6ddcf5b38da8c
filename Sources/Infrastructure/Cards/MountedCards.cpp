// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MountedCards.h"

#include "CardDevice.h"
#include "CardFinder.h"
#include "Guard.h"
#include "MountWatch.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace bildkurier {

struct MountedCards::Impl {
    MainQueue& main;
    Background& background;
    std::shared_ptr<CaptureDates> captureDates;
    Options options;

    std::weak_ptr<BrowserSink> sink;
    std::vector<std::shared_ptr<CardDevice>> devices;
    Guard events;
    std::optional<MountWatch> watch;  ///< destroyed first: it uses all the others

    using Event = std::function<void(const CardFinder::Place&)>;

    void start();
    void added(const CardFinder::Place& place);
    void removed(const CardFinder::Place& place);
};

/// Each event is a task of its own on the main queue, so that any of them may destroy this.
void MountedCards::Impl::start() {
    const Event onAdded = events([this](const CardFinder::Place& place) { added(place); });
    const Event onRemoved = events([this](const CardFinder::Place& place) { removed(place); });
    const Task onReported = events([this] {
        if (const auto receiver = sink.lock()) receiver->attachedDevicesReported();
    });
    auto look = [&queue = main, onAdded, onRemoved, onReported, isFirst = true,
                 finder = CardFinder(options)](std::span<const Mount> table) mutable {
        const auto changes = finder.look(table, std::chrono::steady_clock::now());
        for (const auto& place : changes.gone) queue.post([onRemoved, place] { onRemoved(place); });
        for (const auto& place : changes.come) queue.post([onAdded, place] { onAdded(place); });
        if (std::exchange(isFirst, false)) queue.post(onReported);
        return finder.nextLook();
    };
    watch.emplace(std::move(look), options.folders);
}

void MountedCards::Impl::added(const CardFinder::Place& place) {
    const auto device =
        devices.emplace_back(std::make_shared<CardDevice>(main, background, captureDates, place));
    if (const auto receiver = sink.lock()) receiver->deviceAdded(device);
}

void MountedCards::Impl::removed(const CardFinder::Place& place) {
    const auto found = std::ranges::find(devices, place, &CardDevice::place);
    if (found == devices.end()) return;
    const auto device = std::move(*found);
    devices.erase(found);
    device->cardRemoved();
    if (const auto receiver = sink.lock()) receiver->deviceRemoved(device);
}

MountedCards::MountedCards(MainQueue& main, Background& background,
                           std::shared_ptr<CaptureDates> captureDates, Options options)
    : impl_(new Impl{.main = main,
                     .background = background,
                     .captureDates = std::move(captureDates),
                     .options = std::move(options)}) {}

MountedCards::~MountedCards() {
    impl_->watch.reset();
    for (const auto& device : impl_->devices) device->closeSession();
}

void MountedCards::start(std::weak_ptr<BrowserSink> sink) {
    impl_->sink = std::move(sink);
    impl_->start();
}

}  // namespace bildkurier
