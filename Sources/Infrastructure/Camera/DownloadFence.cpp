// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DownloadFence.h"

#include <filesystem>
#include <map>
#include <mutex>
#include <system_error>

namespace bildkurier {

namespace {

/// The fence of a folder, whichever path leads there. A folder made anew has the same.
std::mutex& fenceOf(const std::string& folder) {
    // Never destroyed, for threads that hang. Few folders are ever downloaded to.
    static auto& fences = *new std::map<std::string, std::mutex>;
    static std::mutex& guard = *new std::mutex;
    std::error_code error;
    const auto real = std::filesystem::weakly_canonical(folder, error);
    const std::lock_guard lock(guard);
    return fences[error ? folder : real.string()];
}

}  // namespace

void withDownloadFence(const std::string& folder, const std::function<void()>& action) {
    const std::lock_guard lock(fenceOf(folder));
    action();
}

}  // namespace bildkurier
