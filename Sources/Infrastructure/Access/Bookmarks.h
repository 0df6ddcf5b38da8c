// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Url.h"

#include <optional>
#include <string>

namespace bildkurier {

/// The system's bookmarks of folders: data that finds a folder again after a restart, together
/// with the permission to use it. Main thread.
class Bookmarks {
public:
    struct Found {
        Url folder;
        bool isStale = false;  ///< still good this time; a fresh bookmark is due
    };

    virtual ~Bookmarks() = default;

    /// Data to store, which need not be text; absent where the system refuses.
    virtual std::optional<std::string> bookmark(const Url& folder) = 0;

    /// Asks the user nothing and mounts nothing; absent when the folder is not to be found.
    virtual std::optional<Found> resolve(const std::string& bookmark) = 0;

    /// Whether the permission was taken up and has to be given back with `stopAccess`.
    /// A file may be meant, too. Any thread.
    virtual bool startAccess(const Url& folder) = 0;
    virtual void stopAccess(const Url& folder) = 0;
};

}  // namespace bildkurier
