// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Bookmarks.h"

#include <memory>

namespace bildkurier {

/// Bookmarks of the sandbox: they carry the permission that the user gave with an open panel
/// over the end of the program.
class SecurityScopedBookmarks final : public Bookmarks {
public:
    SecurityScopedBookmarks();
    ~SecurityScopedBookmarks() override;

    std::optional<std::string> bookmark(const Url& folder) override;
    std::optional<Found> resolve(const std::string& bookmark) override;
    bool startAccess(const Url& folder) override;
    void stopAccess(const Url& folder) override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace bildkurier
