// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "BookmarkFileAccess.h"

#include <utility>

namespace bildkurier {

BookmarkFileAccess::BookmarkFileAccess(std::shared_ptr<Bookmarks> bookmarks)
    : bookmarks_(std::move(bookmarks)) {}

Handle BookmarkFileAccess::start(const Url& file) {
    if (!bookmarks_->startAccess(file)) return {};
    return {bookmarks_.get(),
            [bookmarks = bookmarks_, file](void*) { bookmarks->stopAccess(file); }};
}

}  // namespace bildkurier
