// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

int interrupts = 0;

/// "name 5" or "name ENOSPC".
void report(const char* name, long result) {
    if (result < 0) {
        std::printf("%s %s\n", name, strerrorname_np(errno));
    } else {
        std::printf("%s %ld\n", name, result);
    }
}

}  // namespace

/// Touches what lies in the folder `arguments[1]`, one call after the other, always the same,
/// and tells what each answered: the program under test of the tests of the preloaded library.
int main(int, char** arguments) {
    std::signal(SIGINT, [](int) { ++interrupts; });
    const std::string root = arguments[1];
    const int folder = open(root.c_str(), O_RDONLY | O_DIRECTORY);  // 1
    if (folder < 0) return 1;
    report("mkdirat", mkdirat(folder, "new", 0700));                              // 2
    const int file = openat(folder, "new/a", O_WRONLY | O_CREAT | O_EXCL, 0600);  // 3
    if (file < 0) return 1;
    report("write", write(file, "0123456789", 10));  // 4
    std::array<iovec, 2> parts{iovec{const_cast<char*>("abc"), 3},
                               iovec{const_cast<char*>("defg"), 4}};
    report("writev", writev(file, parts.data(), 2));  // 5
    report("fsync", fsync(file));                     // 6
    struct stat facts{};
    report("fstat", fstat(file, &facts));  // 7
    report("close", close(file));          // 8
    report("closed", fcntl(file, F_GETFD));
    report("renameat2", syscall(SYS_renameat2, folder, "new/a", folder, "b", 1));  // 9
    report("stat", stat((root + "/b").c_str(), &facts));                           // 10
    report("unlinkat", unlinkat(folder, "b", 0));                                  // 11
    report("unlinkat", unlinkat(folder, "new", AT_REMOVEDIR));                     // 12
    close(folder);                                                                 // 13
    const int elsewhere = open("/dev/null", O_WRONLY);
    report("elsewhere", write(elsewhere, "x", 1));
    close(elsewhere);
    std::printf("interrupts %d\n", interrupts);
}
