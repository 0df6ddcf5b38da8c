// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpKeyWalk.h"

#include "FileName.h"
#include "SFTPFileStore.h"
#include "SftpOutput.h"
#include "Url.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

namespace bildkurier {
namespace {

constexpr std::string_view echoMark = "sftp> ";

std::string listCommand(const std::string& folder) {
    return "-ls -ln " + SFTPFileStore::quotedForListing(folder);
}

std::string join(const std::string& folder, std::string_view name) {
    return Url{.path = folder}.appending(name).path;
}

/// The folders of a level by the quoted name that ends the echo of the command for each.
class EchoedFolders {
public:
    explicit EchoedFolders(const std::vector<std::string>& level) {
        for (const auto& folder : level)
            folders_.try_emplace(SFTPFileStore::quotedForListing(folder), &folder);
    }

    const std::string* named(std::string_view echo) const {
        echo.remove_prefix(std::min(echo.find('"'), echo.size()));
        for (const auto& name : {std::string(echo), withoutEscapes(echo)}) {
            const auto found = folders_.find(name);
            if (found != folders_.end()) return found->second;
        }
        return nullptr;
    }

private:
    std::unordered_map<std::string, const std::string*> folders_;
};

/// The name of what `path` says to be in `folder`; absent when it is elsewhere, hidden or not
/// to be trusted. A line that a name with a line break in it forges has no such path.
std::optional<std::string> visibleName(std::string_view path, const std::string& folder) {
    auto name = withoutEscapes(lastPathComponent(path));
    if (name.starts_with('.') || !isPlainFileName(name)) return {};
    const bool isThere =
        path == join(folder, lastPathComponent(path)) || withoutEscapes(path) == join(folder, name);
    if (!isThere) return {};
    return name;
}

}  // namespace

SftpCommands SftpKeyWalk::commands() const {
    SftpCommands commands;
    commands.reserve(level_.size());
    std::ranges::transform(level_, std::back_inserter(commands), listCommand);
    return commands;
}

void SftpKeyWalk::read(std::string_view output) {
    const EchoedFolders folders(level_);
    std::vector<std::string> nextLevel;
    const std::string* folder = nullptr;
    for (const auto line : nonEmptyLines(output)) {
        if (line.starts_with(echoMark)) {
            folder = folders.named(line);
            continue;
        }
        const auto entry = listingLine(line);
        if (!folder || !entry) continue;
        const auto name = visibleName(entry->path, *folder);
        if (!name) continue;
        if (!entry->isDirectory) {
            keys_.insert(fileKey(*name, entry->size));
        } else if (auto deeper = join(*folder, *name); !objection({listCommand(deeper)})) {
            nextLevel.push_back(std::move(deeper));
        }
    }
    level_ = std::move(nextLevel);
    --levelsLeft_;
}

}  // namespace bildkurier
