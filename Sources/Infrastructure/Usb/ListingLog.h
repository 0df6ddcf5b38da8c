// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <functional>
#include <string_view>
#include <utility>

namespace bildkurier {

/// Reads along what libgphoto2 logs while it opens or lists a camera. It tells nobody otherwise
/// how far it has come, and answers that all is well when it has left out what it got no answer
/// for.
class ListingLog {
public:
    /// `onObject` hears of each object that the camera is asked to describe.
    explicit ListingLog(std::function<void()> onObject) : onObject_(std::move(onObject)) {}

    /// A message, and which of the library's functions it is from.
    void read(std::string_view function, std::string_view message);

    /// Whether something of the camera's may be missing.
    bool omits() const { return omits_; }
    /// Whether that is so because no answer came, not because of the camera's answer.
    bool isDisturbed() const { return isDisturbed_; }

private:
    void readFault(std::string_view message);

    std::function<void()> onObject_;
    bool asksAllCards_ = false;
    bool omits_ = false;
    bool isDisturbed_ = false;
};

}  // namespace bildkurier
