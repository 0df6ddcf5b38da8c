// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "JoinedBrowsers.h"

#include <cstddef>
#include <utility>

namespace bildkurier {

/// Passes on what comes of all browsers, and that all was reported only when the last says so.
class JoinedBrowsers::Sink final : public BrowserSink {
public:
    Sink(std::weak_ptr<BrowserSink> receiver, std::size_t browsers)
        : receiver_(std::move(receiver)), missing_(browsers) {}

    void deviceAdded(std::shared_ptr<NativeDevice> device) override {
        if (const auto receiver = receiver_.lock()) receiver->deviceAdded(std::move(device));
    }
    void deviceIdentified(const std::shared_ptr<NativeDevice>& device) override {
        if (const auto receiver = receiver_.lock()) receiver->deviceIdentified(device);
    }
    void deviceRemoved(const std::shared_ptr<NativeDevice>& device) override {
        if (const auto receiver = receiver_.lock()) receiver->deviceRemoved(device);
    }
    void attachedDevicesReported() override {
        if (--missing_ > 0) return;
        if (const auto receiver = receiver_.lock()) receiver->attachedDevicesReported();
    }

private:
    std::weak_ptr<BrowserSink> receiver_;
    std::size_t missing_;
};

JoinedBrowsers::JoinedBrowsers(std::vector<std::unique_ptr<NativeBrowser>> browsers)
    : browsers_(std::move(browsers)) {}

JoinedBrowsers::~JoinedBrowsers() = default;

void JoinedBrowsers::start(std::weak_ptr<BrowserSink> sink) {
    sink_ = std::make_shared<Sink>(std::move(sink), browsers_.size());
    for (const auto& browser : browsers_) browser->start(sink_);
}

}  // namespace bildkurier
