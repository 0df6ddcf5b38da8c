// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#import "SecurityScopedBookmarks.h"

#import "FoundationText.h"

#import <Foundation/Foundation.h>

#include <map>
#include <mutex>

namespace bildkurier {

/// Only the very URL that came of a bookmark carries its permission, another one of the same
/// path does not.
struct SecurityScopedBookmarks::Impl {
    std::mutex mutex;
    std::map<std::string, NSURL*> resolved;  ///< by path

    NSURL* urlOf(const Url& folder) {
        const std::lock_guard lock(mutex);
        const auto known = resolved.find(folder.path);
        if (known != resolved.end()) return known->second;
        return [NSURL fileURLWithPath:stringOf(folder.path)];
    }
};

SecurityScopedBookmarks::SecurityScopedBookmarks() : impl_(std::make_unique<Impl>()) {}

SecurityScopedBookmarks::~SecurityScopedBookmarks() = default;

std::optional<std::string> SecurityScopedBookmarks::bookmark(const Url& folder) {
    NSData* data =
        [impl_->urlOf(folder) bookmarkDataWithOptions:NSURLBookmarkCreationWithSecurityScope
                       includingResourceValuesForKeys:nil
                                        relativeToURL:nil
                                                error:nil];
    if (data == nil) return std::nullopt;
    return std::string(static_cast<const char*>(data.bytes), data.length);
}

std::optional<Bookmarks::Found> SecurityScopedBookmarks::resolve(const std::string& bookmark) {
    BOOL isStale = NO;
    NSURL* url = [NSURL URLByResolvingBookmarkData:[NSData dataWithBytes:bookmark.data()
                                                                  length:bookmark.size()]
                                           options:NSURLBookmarkResolutionWithSecurityScope |
                                                   NSURLBookmarkResolutionWithoutUI |
                                                   NSURLBookmarkResolutionWithoutMounting
                                     relativeToURL:nil
                               bookmarkDataIsStale:&isStale
                                             error:nil];
    const auto path = textOf(url.path);
    if (!path) return std::nullopt;
    const std::lock_guard lock(impl_->mutex);
    impl_->resolved.insert_or_assign(*path, url);
    return Found{.folder = Url::file(*path), .isStale = isStale == YES};
}

bool SecurityScopedBookmarks::startAccess(const Url& folder) {
    return [impl_->urlOf(folder) startAccessingSecurityScopedResource];
}

void SecurityScopedBookmarks::stopAccess(const Url& folder) {
    [impl_->urlOf(folder) stopAccessingSecurityScopedResource];
}

}  // namespace bildkurier
