// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "NativeCamera.h"

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace bildkurier {

/// Writes down the events of a native browser.
class RecordingBrowserSink final : public BrowserSink {
public:
    std::vector<std::string> events;
    std::vector<std::shared_ptr<NativeDevice>> added;
    std::vector<std::shared_ptr<NativeDevice>> removed;
    std::vector<std::thread::id> threads;
    std::function<void()> onEvent = [] {};

    void deviceAdded(std::shared_ptr<NativeDevice> device) override {
        added.push_back(device);
        note("+" + device->facts().name.value_or(""));
    }
    void deviceIdentified(const std::shared_ptr<NativeDevice>& device) override {
        note("=" + device->facts().name.value_or(""));
    }
    void deviceRemoved(const std::shared_ptr<NativeDevice>& device) override {
        removed.push_back(device);
        note("-" + device->facts().name.value_or(""));
    }
    void attachedDevicesReported() override { note("reported"); }

private:
    void note(std::string event) {
        events.push_back(std::move(event));
        threads.push_back(std::this_thread::get_id());
        onEvent();
    }
};

}  // namespace bildkurier
