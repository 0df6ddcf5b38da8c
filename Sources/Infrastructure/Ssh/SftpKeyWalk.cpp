// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpKeyWalk.h"

#include "FileName.h"
#include "SFTPFileStore.h"
#include "SftpOutput.h"
#include "Url.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace bildkurier {
namespace {

constexpr std::string_view echoMark = "sftp> ";

std::string listNamesCommand(const std::string& folder) {
    return "-ls -ln " + SFTPFileStore::quotedForListing(folder);
}

std::string join(const std::string& folder, std::string_view name) {
    return Url{.path = folder}.appending(name).path;
}

/// Whether the client complains in `line` that it could not read a folder to its end. One that is
/// not there at all is none of these.
bool saysUnreadable(std::string_view line) {
    return line.starts_with("remote readdir(\"") || line.starts_with("Couldn't read directory: ");
}

/// The folders of a level by what the client echoes of the command for each, as it looks
/// without escapes.
class EchoedFolders {
public:
    explicit EchoedFolders(const std::vector<std::string>& level) {
        for (const auto& folder : level)
            folders_.try_emplace(withoutEscapes(SFTPFileStore::quotedForListing(folder)), &folder);
    }

    const std::string* named(std::string_view echo) const {
        echo.remove_prefix(std::min(echo.find('"'), echo.size()));
        const auto found = folders_.find(withoutEscapes(echo));
        return found == folders_.end() ? nullptr : found->second;
    }

private:
    std::unordered_map<std::string, const std::string*> folders_;
};

/// The folders to list next, each once.
struct NextLevel {
    std::vector<std::string> folders;
    std::unordered_set<std::string> known;

    void add(std::string folder) {
        if (objection({listNamesCommand(folder)}) || !known.insert(folder).second) return;
        folders.push_back(std::move(folder));
    }
};

/// What the name may be of what `path` says to be in `folder`; nothing when it is elsewhere,
/// hidden or not to be trusted. A line that a name with a line break in it forges has no such
/// path. What looks like an escape of the client's may as well be the name itself.
std::vector<std::string> visibleNames(std::string_view path, const std::string& folder) {
    const std::string asShown(lastPathComponent(path));
    // The client leaves the slashes behind the folder's name as they were given.
    const std::string expected = folder + (folder.ends_with('/') ? "" : "/") + asShown;
    if (withoutEscapes(path) != withoutEscapes(expected)) return {};
    std::vector<std::string> names{asShown};
    if (auto plain = withoutEscapes(asShown); plain != asShown) names.push_back(std::move(plain));
    std::erase_if(names,
                  [](const auto& name) { return name.starts_with('.') || !isPlainFileName(name); });
    return names;
}

}  // namespace

SftpCommands SftpKeyWalk::commands() const {
    SftpCommands commands;
    commands.reserve(level_.size());
    std::ranges::transform(level_, std::back_inserter(commands), listNamesCommand);
    return commands;
}

FileKeys SftpKeyWalk::keys() const {
    FileKeys keys;
    for (const auto& [path, size] : files_) keys.insert(fileKey(lastPathComponent(path), size));
    return keys;
}

void SftpKeyWalk::read(std::string_view output) {
    const EchoedFolders folders(level_);
    std::unordered_set<const std::string*> answered;
    const std::string* folder = nullptr;
    NextLevel next;
    for (const auto line : nonEmptyLines(output)) {
        if (line.starts_with(echoMark)) {
            folder = folders.named(line);
            answered.insert(folder);
        } else if (folder && saysUnreadable(line)) {
            unlisted_.insert_or_assign(*folder, line);
        } else if (const auto entry = listingLine(line); folder && entry) {
            for (const auto& name : visibleNames(entry->path, *folder)) {
                if (entry->isDirectory) {
                    next.add(join(*folder, name));
                } else {
                    files_.insert_or_assign(join(*folder, name), entry->size);
                }
            }
        }
    }
    for (const auto& asked : level_)
        if (!answered.contains(&asked)) unlisted_.try_emplace(asked);
    level_ = std::move(next.folders);
    --levelsLeft_;
}

}  // namespace bildkurier
