// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "NativeCamera.h"

#include <functional>
#include <string>
#include <vector>

namespace bildkurier {

/// Writes down the events of a device.
class RecordingDeviceSink final : public DeviceSink {
public:
    std::vector<std::string> events;
    std::function<void()> onEvent = [] {};

    void sessionOpened(const std::optional<Error>& error) override {
        note(error ? "failed: " + error->message : "opened");
    }
    void catalogGrows(std::size_t /*filesSoFar*/) override { note("grows"); }
    void catalogReady() override { note("ready"); }
    void itemsAdded() override { note("added"); }
    void itemsRemoved() override { note("removed"); }

private:
    void note(std::string event) {
        events.push_back(std::move(event));
        onEvent();
    }
};

}  // namespace bildkurier
