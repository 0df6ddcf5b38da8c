// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Url.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// Remembers of the folders of servers whether they were listed to the end when they were listed
/// last. Several may be under way at once. Any thread.
class ListingRecord {
public:
    /// A listing begins: its number, for when it ends.
    std::uint64_t begin();

    /// `trouble` is why the listing of `folder` broke off; absent when it did not. It says nothing
    /// about what one that began later has listed. The same listing may then tell of a folder
    /// further down.
    void note(std::uint64_t number, const Url& folder, std::optional<std::string> trouble);

    /// Why it is not known what is in the folder in which `url` lies; absent when it is known, or
    /// nobody has asked.
    std::optional<std::string> troubleAbove(const Url& url) const;

private:
    struct Listing {
        Url folder;  ///< with a slash at the end
        std::optional<std::string> trouble;
        std::uint64_t number = 0;
    };

    mutable std::mutex mutex_;
    std::vector<Listing> listings_;
    std::uint64_t begun_ = 0;
};

}  // namespace bildkurier
