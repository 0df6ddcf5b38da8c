// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "BookmarkFolderAccess.h"

#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace {

namespace fs = std::filesystem;

/// Without ".", ".." and a slash at the end.
std::string standardized(const fs::path& path) {
    const fs::path normal = path.lexically_normal();
    return normal.has_filename() ? normal.string() : normal.parent_path().string();
}

/// Whether `path` is `folder` or lies below it.
bool covers(std::string folder, std::string_view path) {
    if (path == folder) return true;
    if (!folder.ends_with('/')) folder += '/';
    return path.starts_with(folder);
}

}  // namespace

BookmarkFolderAccess::BookmarkFolderAccess(std::shared_ptr<UserDefaults> defaults, std::string key,
                                           bool sandboxed, std::shared_ptr<Bookmarks> bookmarks)
    : defaults_(std::move(defaults)),
      key_(std::move(key)),
      sandboxed_(sandboxed),
      bookmarks_(std::move(bookmarks)) {}

BookmarkFolderAccess::~BookmarkFolderAccess() { letGo(); }

void BookmarkFolderAccess::remember(const Url& folder) {
    store(folder);
    hold(folder, true);
}

std::optional<Url> BookmarkFolderAccess::restore() {
    const auto bookmark = defaults_->string(key_);
    if (!bookmark) return std::nullopt;
    const auto found = bookmarks_->resolve(*bookmark);
    if (!found) return std::nullopt;
    hold(found->folder, !sandboxed_);
    if (found->isStale) store(found->folder);
    return found->folder;
}

bool BookmarkFolderAccess::isGranted(const Url& url) const {
    if (!sandboxed_) return true;
    if (!held_) return false;
    return covers(standardized(held_->folder.path), standardized(url.path)) ||
           covers(held_->realPath, realPath(url));
}

std::string BookmarkFolderAccess::realPath(const Url& url) {
    std::string whole = standardized(url.path);
    for (fs::path existing = whole; existing.has_relative_path();
         existing = existing.parent_path()) {
        std::error_code error;
        const fs::path real = fs::canonical(existing, error);
        if (!error) return standardized(real.string() + whole.substr(existing.string().size()));
    }
    return whole;
}

void BookmarkFolderAccess::store(const Url& folder) {
    if (const auto bookmark = bookmarks_->bookmark(folder)) defaults_->setString(key_, *bookmark);
}

void BookmarkFolderAccess::hold(const Url& folder, bool evenWithoutAccess) {
    if (held_ && held_->realPath == realPath(folder)) return;
    letGo();
    const bool started = bookmarks_->startAccess(folder);
    if (started || evenWithoutAccess)
        held_ = Held{.folder = folder, .realPath = realPath(folder), .started = started};
}

void BookmarkFolderAccess::letGo() {
    if (held_ && held_->started) bookmarks_->stopAccess(held_->folder);
    held_.reset();
}

}  // namespace bildkurier
