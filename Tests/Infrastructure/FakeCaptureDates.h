// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CaptureDates.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace bildkurier {

/// Dates by the names of files, whose contents do not matter. Any thread.
class FakeCaptureDates final : public CaptureDates {
public:
    std::map<std::string, Date> dates;
    std::vector<std::string> asked;       ///< names, in any order
    std::function<void()> onAsk = [] {};  ///< never at once from two threads

    std::optional<Date> captureDate(const std::string& path) override;

private:
    std::mutex mutex_;
};

}  // namespace bildkurier
