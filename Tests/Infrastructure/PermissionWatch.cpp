// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "PermissionWatch.h"

#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <stdexcept>

namespace bildkurier {

PermissionWatch::PermissionWatch(const std::string& folder)
    : events_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), maskBefore_(::umask(0)) {
    constexpr auto events = IN_CREATE | IN_MOVED_TO | IN_ATTRIB;
    if (::inotify_add_watch(events_.get(), folder.c_str(), events) < 0)
        throw std::runtime_error("cannot watch " + folder);
}

PermissionWatch::~PermissionWatch() { ::umask(maskBefore_); }

std::vector<std::string> PermissionWatch::seen() const {
    std::vector<std::string> names;
    std::array<char, 65536> buffer{};
    const auto size = ::read(events_.get(), buffer.data(), buffer.size());
    for (std::ptrdiff_t at = 0; at < size;) {
        inotify_event event{};
        std::memcpy(&event, buffer.data() + at, sizeof event);
        const char* name = buffer.data() + at + sizeof event;
        at += static_cast<std::ptrdiff_t>(sizeof event + event.len);
        if (event.len == 0) continue;
        names.push_back(name + std::string((event.mask & IN_ATTRIB) != 0 ? "!" : ""));
    }
    return names;
}

}  // namespace bildkurier
