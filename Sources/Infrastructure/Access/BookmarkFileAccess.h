// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Bookmarks.h"
#include "FileAccess.h"

#include <memory>

namespace bildkurier {

/// The permission that the system's bookmarks know.
class BookmarkFileAccess final : public FileAccess {
public:
    explicit BookmarkFileAccess(std::shared_ptr<Bookmarks> bookmarks);

    Handle start(const Url& file) override;

private:
    std::shared_ptr<Bookmarks> bookmarks_;
};

}  // namespace bildkurier
