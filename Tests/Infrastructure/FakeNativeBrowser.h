// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "NativeCamera.h"

#include <utility>

namespace bildkurier {

/// A browser whose devices come and go as the test says, through the sink it was given.
class FakeNativeBrowser final : public NativeBrowser {
public:
    explicit FakeNativeBrowser(std::weak_ptr<BrowserSink>& sink) : sink_(sink) {}

    void start(std::weak_ptr<BrowserSink> sink) override { sink_ = std::move(sink); }

private:
    std::weak_ptr<BrowserSink>& sink_;
};

}  // namespace bildkurier
