// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "HiddenCopies.h"

#include "SystemCall.h"

#include <dirent.h>
#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <memory>
#include <random>
#include <string_view>
#include <vector>

namespace bildkurier {

namespace {

constexpr std::string_view prefix = ".bildkurier-";
constexpr std::size_t markDigits = 16;

bool isHiddenCopyName(std::string_view name) {
    return name.size() == prefix.size() + markDigits && name.starts_with(prefix) &&
           name.find_first_not_of("0123456789abcdef", prefix.size()) == std::string_view::npos;
}

std::vector<std::string> hiddenCopies(int folder) {
    const auto open = [&] { return ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC); };
    const int descriptor = retried(open);
    const auto close = [](DIR* stream) { ::closedir(stream); };
    const std::unique_ptr<DIR, decltype(close)> stream(descriptor < 0 ? nullptr
                                                                      : ::fdopendir(descriptor));
    std::vector<std::string> names;
    if (!stream) {
        const FileDescriptor notTaken(descriptor);
        return names;
    }
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread has this stream.
    while (const dirent* entry = ::readdir(stream.get()))
        if (isHiddenCopyName(entry->d_name)) names.emplace_back(entry->d_name);
    return names;
}

bool isAbandoned(int folder, const std::string& name) {
    const FileDescriptor copy(retried([&] {
        return ::openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    }));
    struct stat facts{};
    return copy && ::fstat(copy.get(), &facts) == 0 && S_ISREG(facts.st_mode) &&
           ::flock(copy.get(), LOCK_SH | LOCK_NB) == 0;
}

}  // namespace

std::string hiddenCopyName() {
    std::random_device random;
    return fmt::format("{}{:08x}{:08x}", prefix, random(), random());
}

void lockHiddenCopy(const FileDescriptor& copy) { ::flock(copy.get(), LOCK_EX | LOCK_NB); }

void removeAbandonedCopies(int folder) {
    for (const std::string& name : hiddenCopies(folder))
        if (isAbandoned(folder, name)) ::unlinkat(folder, name.c_str(), 0);
}

}  // namespace bildkurier
