// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SecurityScopedBookmarks.h"

#include "FoundationValues.h"

#include <map>
#include <mutex>
#include <string>

namespace bildkurier {

/// The permission clings to the system's own object, not to the path in it: access starts with
/// the very object that a bookmark was resolved to, and stops with the one it started with.
struct SecurityScopedBookmarks::Locations {
    std::mutex mutex;
    std::map<std::string, NSURL*> resolved;
    std::multimap<std::string, NSURL*> started;
};

SecurityScopedBookmarks::SecurityScopedBookmarks() : locations_(std::make_unique<Locations>()) {}

SecurityScopedBookmarks::~SecurityScopedBookmarks() = default;

std::optional<std::string> SecurityScopedBookmarks::bookmark(const Url& folder) {
    NSData* const data = [locationOf(folder.path, true)
               bookmarkDataWithOptions:NSURLBookmarkCreationWithSecurityScope
        includingResourceValuesForKeys:nil
                         relativeToURL:nil
                                 error:nullptr];
    if (data == nil) return std::nullopt;
    return bytesOf(data);
}

std::optional<Bookmarks::Found> SecurityScopedBookmarks::resolve(const std::string& bookmark) {
    BOOL isStale = NO;
    NSURL* const location =
        [NSURL URLByResolvingBookmarkData:dataOf(bookmark)
                                  options:NSURLBookmarkResolutionWithoutUI |
                                          NSURLBookmarkResolutionWithoutMounting |
                                          NSURLBookmarkResolutionWithSecurityScope
                            relativeToURL:nil
                      bookmarkDataIsStale:&isStale
                                    error:nullptr];
    if (location == nil) return std::nullopt;
    const Url folder = urlOf(location);
    const std::lock_guard lock(locations_->mutex);
    locations_->resolved[folder.path] = location;
    return Found{.folder = folder, .isStale = isStale == YES};
}

bool SecurityScopedBookmarks::startAccess(const Url& folder) {
    const std::lock_guard lock(locations_->mutex);
    const auto found = locations_->resolved.find(folder.path);
    NSURL* const location =
        found != locations_->resolved.end() ? found->second : locationOf(folder.path, false);
    if (![location startAccessingSecurityScopedResource]) return false;
    locations_->started.emplace(folder.path, location);
    return true;
}

void SecurityScopedBookmarks::stopAccess(const Url& folder) {
    const std::lock_guard lock(locations_->mutex);
    const auto found = locations_->started.find(folder.path);
    if (found == locations_->started.end()) return;
    [found->second stopAccessingSecurityScopedResource];
    locations_->started.erase(found);
}

}  // namespace bildkurier
