// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DurableFolders.h"

#include "DurableFiles.h"
#include "SystemCall.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <utility>

namespace bildkurier {

int DurableFolders::make(const std::string& path) {
    if (const auto folder = recognised(path)) {
        const std::scoped_lock lock(mutex_);
        if (durable_.contains(*folder)) return 0;
    }
    if (const int error = makeFolder(path)) return error;
    if (auto folder = recognised(path)) {
        const std::scoped_lock lock(mutex_);
        durable_.insert(*std::move(folder));
    }
    return 0;
}

/// Absent where the volume does not tell folders apart that bear the same number.
std::optional<DurableFolders::Folder> DurableFolders::recognised(const std::string& path) {
    constexpr unsigned asked = STATX_TYPE | STATX_INO | STATX_BTIME;
    struct statx facts{};
    if (retried([&] { return ::statx(AT_FDCWD, path.c_str(), 0, asked, &facts); }) != 0 ||
        (facts.stx_mask & asked) != asked || !S_ISDIR(facts.stx_mode)) {
        return std::nullopt;
    }
    return Folder{.path = path,
                  .device = std::uint64_t{facts.stx_dev_major} << 32U | facts.stx_dev_minor,
                  .number = facts.stx_ino,
                  .madeSeconds = facts.stx_btime.tv_sec,
                  .madeNanoseconds = facts.stx_btime.tv_nsec};
}

}  // namespace bildkurier
