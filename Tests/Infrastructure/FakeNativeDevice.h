// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "NativeCamera.h"

#include <utility>

namespace bildkurier {

/// A device that says what the test says, and remembers what was asked of it.
class FakeNativeDevice final : public NativeDevice {
public:
    explicit FakeNativeDevice(DeviceFacts facts = {}) : known(std::move(facts)) {}

    bool camera = true;
    DeviceFacts known;
    std::vector<NativeItem> items;
    OtherFiles others;
    std::weak_ptr<DeviceSink> sink;
    int opened = 0;
    int closed = 0;

    bool isCamera() const override { return camera; }
    DeviceFacts facts() const override { return known; }
    std::vector<NativeItem> mediaFiles() const override { return items; }
    OtherFiles otherFiles() const override { return others; }
    void setSink(std::weak_ptr<DeviceSink> to) override { sink = std::move(to); }
    void openSession() override { ++opened; }
    void closeSession() override { ++closed; }
};

}  // namespace bildkurier
