// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Bookmarks.h"

namespace bildkurier {

/// Bookmarks of a system where a program may use whatever its user may: the plain path.
class PathBookmarks final : public Bookmarks {
public:
    std::optional<std::string> bookmark(const Url& folder) override { return folder.path; }
    std::optional<Found> resolve(const std::string& bookmark) override {
        if (!bookmark.starts_with('/')) return std::nullopt;
        return Found{.folder = Url::file(bookmark)};
    }
    bool startAccess(const Url& /*folder*/) override { return false; }
    void stopAccess(const Url& /*folder*/) override {}
};

}  // namespace bildkurier
