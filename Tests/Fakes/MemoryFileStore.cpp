// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MemoryFileStore.h"

#include "LetterCase.h"

#include <utility>

namespace bildkurier {

namespace {

std::string pathOf(const Url& url) {
    std::string path = url.path;
    while (path.size() > 1 && path.ends_with('/')) path.pop_back();
    return path;
}

std::string parentOf(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// With the slash that the paths of everything below it begin with.
std::string start(const std::string& folder) {
    return folder.ends_with('/') ? folder : folder + "/";
}

}  // namespace

bool MemoryFileStore::PathOrder::operator()(const std::string& a, const std::string& b) const {
    return ignoresCase ? lowerCased(a) < lowerCased(b) : a < b;
}

bool MemoryFileStore::isBelow(const std::string& path, const std::string& above) const {
    const std::string prefix = start(above);
    const PathOrder order = folders.key_comp();
    const std::string head = path.substr(0, prefix.size());
    return path.size() > prefix.size() && !order(head, prefix) && !order(prefix, head);
}

std::optional<std::string> MemoryFileStore::placeFor(const std::string& path) const {
    const auto parent = folders.find(parentOf(path));
    if (parent == folders.end()) return {};
    return start(*parent) + Url::file(path).lastComponent();
}

Tree MemoryFileStore::tree(const Url& folder) const {
    const std::string top = pathOf(folder);
    const auto relative = [&](const auto& path) { return path.substr(start(top).size()); };
    Tree found;
    for (const auto& [path, contents] : files)
        if (isBelow(path, top)) found[relative(path)] = contents;
    for (const auto& path : folders)
        if (isBelow(path, top)) found[relative(path) + "/"];
    return found;
}

Url MemoryFileStore::stagingDirectory(const Url& destination) {
    return staging.value_or(destination.appending(".bildkurier-tmp"));
}

FileListing MemoryFileStore::listing(const Url& folder) {
    FileListing found;
    for (const auto& [path, contents] : tree(folder)) {
        const bool hidden = path.starts_with('.') || path.find("/.") != std::string::npos;
        if (hidden || path.ends_with('/')) continue;
        found.keys.insert(fileKey(Url::file(path).lastComponent(), std::ssize(contents)));
    }
    return found;
}

bool MemoryFileStore::fileExists(const Url& url) {
    return files.contains(pathOf(url)) || folders.contains(pathOf(url));
}

std::optional<std::int64_t> MemoryFileStore::fileSize(const Url& url) {
    const auto found = files.find(pathOf(url));
    if (found == files.end()) return {};
    return std::ssize(found->second);
}

bool MemoryFileStore::isWritableDirectory(const Url& url) { return folders.contains(pathOf(url)); }

bool MemoryFileStore::isNetworkVolume(const Url& url) { return isNetwork && fileExists(url); }

std::optional<std::int64_t> MemoryFileStore::availableCapacity(const Url& url) {
    return fileExists(url) ? capacity : std::nullopt;
}

Result<> MemoryFileStore::createDirectory(const Url& url) {
    const std::string path = pathOf(url);
    if (folders.contains(path)) return {};
    if (files.contains(path)) return failure("Dort liegt eine Datei.");
    if (auto made = createDirectory(Url::file(parentOf(path))); !made) return made;
    if (const auto place = placeFor(path)) folders.insert(*place);
    return {};
}

Result<> MemoryFileStore::moveItem(const Url& source, const Url& target) {
    const auto place = placeFor(pathOf(target));
    if (!files.contains(pathOf(source))) return failure("Die Datei fehlt.");
    if (fileExists(target)) return failure("Der Name ist vergeben.");
    if (!place) return failure("Der Ordner fehlt.");
    auto node = files.extract(pathOf(source));
    node.key() = *place;
    files.insert(std::move(node));
    return {};
}

void MemoryFileStore::removeItem(const Url& url) {
    const std::string path = pathOf(url);
    if (kept.contains(path)) return;
    files.erase(path);
    folders.erase(path);
    std::erase_if(files, [&](const auto& file) { return isBelow(file.first, path); });
    std::erase_if(folders, [&](const auto& folder) { return isBelow(folder, path); });
}

}  // namespace bildkurier
