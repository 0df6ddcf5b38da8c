// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"

#include <chrono>
#include <ctime>
#include <optional>
#include <string_view>

namespace bildkurier {

/// What turns the time stamps of a card's file system back into what the camera's clock showed.
///
/// FAT keeps a wall clock without zone. The kernel takes it with one offset for the whole
/// year, which moves the hours next to midnight to another day for half of it.
class CardClock {
public:
    /// `type` and `options` of the card's mount. `minutesWest` is the kernel's own time zone,
    /// which counts where the options name none.
    CardClock(std::string_view type, std::string_view options, std::chrono::minutes minutesWest);

    /// The camera's wall clock at `stamp`, as local time. Other file systems know their zone:
    /// `stamp` is right as it is. Absent for a time that no calendar shows.
    std::optional<Date> date(const std::timespec& stamp) const;

private:
    bool isWallClock_;
    std::chrono::minutes east_;  ///< by which the kernel took the wall clock to be ahead of UTC
};

/// The time zone that the kernel was told.
std::chrono::minutes kernelMinutesWest();

}  // namespace bildkurier
