// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Bookmarks.h"
#include "FolderAccess.h"
#include "UserDefaults.h"

#include <memory>
#include <optional>
#include <string>

namespace bildkurier {

/// Keeps the permission as a bookmark in the user defaults database. At most one folder is held
/// at a time, until another one or the end of this object. Every failure is silent.
class BookmarkFolderAccess final : public FolderAccess {
public:
    /// The bookmark is stored under `key`. Outside the sandbox everything is granted.
    BookmarkFolderAccess(std::shared_ptr<UserDefaults> defaults, std::string key, bool sandboxed,
                         std::shared_ptr<Bookmarks> bookmarks);
    BookmarkFolderAccess(const BookmarkFolderAccess&) = delete;
    BookmarkFolderAccess& operator=(const BookmarkFolderAccess&) = delete;
    ~BookmarkFolderAccess() override;

    void remember(const Url& folder) override;
    std::optional<Url> restore() override;
    bool isGranted(const Url& url) const override;

    /// The path with its links resolved as far as it exists; the rest follows unchanged.
    static std::string realPath(const Url& url);

private:
    struct Held {
        Url folder;
        std::string realPath;
        bool started;  ///< access has to be stopped
    };

    void store(const Url& folder);
    /// Unless it is held already.
    void hold(const Url& folder, bool evenWithoutAccess);
    void letGo();

    std::shared_ptr<UserDefaults> defaults_;
    std::string key_;
    bool sandboxed_;
    std::shared_ptr<Bookmarks> bookmarks_;
    std::optional<Held> held_;
};

}  // namespace bildkurier
