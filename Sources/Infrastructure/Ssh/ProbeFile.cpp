// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProbeFile.h"

#include "SystemCall.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace bildkurier {
namespace {

/// Whether the file has not lost its name to somebody who had it for the last.
bool isThere(const FileDescriptor& file) {
    struct stat status{};
    return ::fstat(file.get(), &status) == 0 && status.st_nlink > 0;
}

FileDescriptor openTogether(const std::string& path) {
    constexpr int flags = O_RDWR | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC;
    while (true) {
        FileDescriptor file(retried([&] { return ::open(path.c_str(), flags, 0600); }));
        if (!file) return {};
        // Where the file system knows no locks, everybody takes it for theirs alone.
        (void)retried([&] { return ::flock(file.get(), LOCK_SH); });
        if (isThere(file)) return file;
    }
}

}  // namespace

ProbeFile::ProbeFile(std::string path) : path_(std::move(path)), file_(openTogether(path_)) {}

ProbeFile::~ProbeFile() {
    if (!file_) return;
    const bool isAlone = ::flock(file_.get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
    if (isAlone && isThere(file_)) ::unlink(path_.c_str());
}

}  // namespace bildkurier
