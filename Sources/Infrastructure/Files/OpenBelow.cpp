// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "OpenBelow.h"

#include "SystemCall.h"

#include <fcntl.h>

#include <string>

namespace bildkurier {

FileDescriptor openBelow(const FileDescriptor& root, std::string_view path, int flags) {
    FileDescriptor above;
    const auto open = [&](std::string_view name, int how) {
        const std::string terminated(name);
        const int folder = (above ? above : root).get();
        return FileDescriptor(retried(
            [&] { return ::openat(folder, terminated.c_str(), how | O_NOFOLLOW | O_CLOEXEC); }));
    };
    for (auto slash = path.find('/'); slash != std::string_view::npos; slash = path.find('/')) {
        above = open(path.substr(0, slash), O_PATH | O_DIRECTORY);
        if (!above) return above;
        path.remove_prefix(slash + 1);
    }
    return open(path.empty() ? "." : path, flags);
}

}  // namespace bildkurier
