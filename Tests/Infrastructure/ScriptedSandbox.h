// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Bookmarks.h"

#include <string>
#include <vector>

namespace bildkurier {

/// A system with bookmarks that does what the test says, and notes what it was asked to do.
/// A folder's bookmark is its number among all bookmarks and its path, as "1:/bilder".
class ScriptedSandbox final : public Bookmarks {
public:
    bool makesBookmarks = true;
    bool findsFolders = true;
    bool isStale = false;
    bool startsAccess = true;
    std::vector<std::string> calls;

    std::optional<std::string> bookmark(const Url& folder) override {
        calls.push_back("bookmark " + folder.path);
        if (!makesBookmarks) return std::nullopt;
        return std::to_string(++made_) + ":" + folder.path;
    }
    std::optional<Found> resolve(const std::string& bookmark) override {
        calls.push_back("resolve " + bookmark);
        if (!findsFolders) return std::nullopt;
        return Found{.folder = Url::file(bookmark.substr(bookmark.find(':') + 1)),
                     .isStale = isStale};
    }
    bool startAccess(const Url& folder) override {
        calls.push_back("start " + folder.path);
        return startsAccess;
    }
    void stopAccess(const Url& folder) override { calls.push_back("stop " + folder.path); }

private:
    int made_ = 0;
};

}  // namespace bildkurier
