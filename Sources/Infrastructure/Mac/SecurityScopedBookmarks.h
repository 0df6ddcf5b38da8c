// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Bookmarks.h"

#include <memory>

namespace bildkurier {

/// Bookmarks that carry the sandbox's permission.
class SecurityScopedBookmarks final : public Bookmarks {
public:
    SecurityScopedBookmarks();
    SecurityScopedBookmarks(const SecurityScopedBookmarks&) = delete;
    SecurityScopedBookmarks& operator=(const SecurityScopedBookmarks&) = delete;
    ~SecurityScopedBookmarks() override;

    std::optional<std::string> bookmark(const Url& folder) override;
    std::optional<Found> resolve(const std::string& bookmark) override;
    bool startAccess(const Url& folder) override;
    void stopAccess(const Url& folder) override;

private:
    struct Locations;

    std::unique_ptr<Locations> locations_;
};

}  // namespace bildkurier
