// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "CaptureDates.h"
#include "MainQueue.h"
#include "NativeCamera.h"

#include <memory>
#include <string>
#include <vector>

namespace bildkurier {

/// Memory cards, and any other folders, as devices.
class MountedCards final : public NativeBrowser {
public:
    struct Options {
        /// Folders given by hand. They are devices while they are there.
        std::vector<std::string> folders;
        /// Whether mounted volumes with a camera's folders are devices, too.
        bool volumes = true;
    };

    /// `main` and `background` must outlive this; `captureDates` may be null: no file then
    /// has a date of its own, only that of the file system.
    MountedCards(MainQueue& main, Background& background,
                 std::shared_ptr<CaptureDates> captureDates, Options options);
    ~MountedCards() override;

    void start(std::weak_ptr<BrowserSink> sink) override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace bildkurier
