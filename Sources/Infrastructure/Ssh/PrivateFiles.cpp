// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "PrivateFiles.h"

#include "FileDescriptor.h"
#include "SystemCall.h"
#include "WriteAll.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace bildkurier {

namespace {

bool isFolder(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

int makeOneFolder(const std::string& path) {
    if (::mkdir(path.c_str(), 0700) == 0) return 0;
    const int error = errno;
    return isFolder(path) ? 0 : error;
}

/// Writes all of the file, durably, and closes it.
int fill(FileDescriptor& file, std::string_view contents) {
    if (const int error = writeAll(file, contents)) return error;
    if (retried([&] { return ::fsync(file.get()); }) != 0) return errno;
    return file.close();
}

}  // namespace

int makePrivateFolder(const std::string& path) {
    const int error = makeOneFolder(path);
    const std::string above = std::filesystem::path(path).parent_path().string();
    if (error != ENOENT || above.empty() || above == path) return error;
    if (const int errorAbove = makePrivateFolder(above)) return errorAbove;
    return makeOneFolder(path);
}

int writePrivateFile(const std::string& path, std::string_view contents) {
    ::unlink(path.c_str());
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
    FileDescriptor file(retried([&] { return ::open(path.c_str(), flags, 0600); }));
    if (!file) return errno;
    const int error = fill(file, contents);
    if (error != 0) ::unlink(path.c_str());
    return error;
}

void flushNames(const std::string& folder) {
    constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
    const FileDescriptor opened(retried([&] { return ::open(folder.c_str(), flags); }));
    if (opened) (void)retried([&] { return ::fsync(opened.get()); });
}

std::expected<std::string, int> readBeginning(const std::string& path, std::size_t limit) {
    constexpr int flags = O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    const FileDescriptor file(retried([&] { return ::open(path.c_str(), flags); }));
    if (!file) return std::unexpected(errno);
    std::string read(limit, '\0');
    std::size_t size = 0;
    while (size < limit) {
        const auto count =
            retried([&] { return ::read(file.get(), read.data() + size, limit - size); });
        if (count < 0) return std::unexpected(errno);
        if (count == 0) break;
        size += static_cast<std::size_t>(count);
    }
    read.resize(size);
    return read;
}

}  // namespace bildkurier
