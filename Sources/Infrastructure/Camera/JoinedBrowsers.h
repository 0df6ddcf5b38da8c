// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "NativeCamera.h"

#include <memory>
#include <vector>

namespace bildkurier {

/// Several browsers as one.
class JoinedBrowsers final : public NativeBrowser {
public:
    explicit JoinedBrowsers(std::vector<std::unique_ptr<NativeBrowser>> browsers);
    ~JoinedBrowsers() override;

    void start(std::weak_ptr<BrowserSink> sink) override;

private:
    class Sink;

    std::shared_ptr<Sink> sink_;
    std::vector<std::unique_ptr<NativeBrowser>> browsers_;
};

}  // namespace bildkurier
