// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "NativeCamera.h"

#include <memory>

namespace bildkurier {

/// The cameras and memory cards that the system's image capture service knows; those of other
/// computers are left alone.
class MacDeviceBrowser final : public NativeBrowser {
public:
    MacDeviceBrowser();
    MacDeviceBrowser(const MacDeviceBrowser&) = delete;
    MacDeviceBrowser& operator=(const MacDeviceBrowser&) = delete;
    ~MacDeviceBrowser() override;

    void start(std::weak_ptr<BrowserSink> sink) override;

private:
    struct Service;

    std::unique_ptr<Service> service_;
};

}  // namespace bildkurier
