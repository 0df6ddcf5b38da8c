// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FolderWatch.h"

#include "SystemCall.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <system_error>
#include <utility>

namespace bildkurier {

FolderWatch::FolderWatch(std::vector<std::string> folders) : folders_(std::move(folders)) {}

void FolderWatch::renew() {
    if (folders_.empty()) return;
    names_.clear();
    told_ = FileDescriptor(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    if (!told_) return;
    for (const std::string& folder : folders_) {
        std::error_code error;
        watchWayTo(std::filesystem::absolute(folder, error).lexically_normal());
        watchWayTo(std::filesystem::weakly_canonical(folder, error));
    }
}

void FolderWatch::watchWayTo(const std::filesystem::path& folder) {
    constexpr std::uint32_t comingAndGoing =
        IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_ONLYDIR;
    std::filesystem::path above = folder.root_path();
    for (const auto& name : folder.relative_path()) {
        const int watched = ::inotify_add_watch(told_.get(), above.c_str(), comingAndGoing);
        if (watched >= 0) names_[watched].insert(name.string());
        above /= name;
    }
}

bool FolderWatch::takeChange() {
    bool matters = false;
    alignas(inotify_event) std::array<char, 16384> buffer{};
    while (true) {
        const auto count =
            retried([&] { return ::read(told_.get(), buffer.data(), buffer.size()); });
        if (count <= 0) return matters;
        for (std::size_t at = 0; at < static_cast<std::size_t>(count);) {
            inotify_event event{};
            std::memcpy(&event, buffer.data() + at, sizeof event);
            const char* name = buffer.data() + at + sizeof event;
            const auto watched = names_.find(event.wd);
            if ((event.mask & (IN_Q_OVERFLOW | IN_IGNORED)) != 0 ||
                (watched != names_.end() && event.len > 0 && watched->second.contains(name)))
                matters = true;
            at += sizeof event + event.len;
        }
    }
}

}  // namespace bildkurier
