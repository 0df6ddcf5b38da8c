// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TemporaryVolume.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <utility>

namespace bildkurier {

namespace {

/// Runs a program silently; false when it fails.
bool runs(std::vector<std::string> command) {
    std::vector<char*> arguments;
    arguments.reserve(command.size() + 1);
    for (auto& word : command) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (const int output : {STDOUT_FILENO, STDERR_FILENO})
        ::posix_spawn_file_actions_addopen(&actions, output, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const bool started =
        ::posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
    ::posix_spawn_file_actions_destroy(&actions);
    int status = -1;
    return started && ::waitpid(child, &status, 0) == child && status == 0;
}

}  // namespace

TemporaryVolume::TemporaryVolume(std::uint64_t bytes) {
    mount({"-t", "tmpfs", "-o", "size=" + std::to_string(bytes), "tmpfs"});
}

TemporaryVolume::TemporaryVolume(std::uint64_t bytes, std::vector<std::string> format) {
    const std::string image = around_.write("image", "");
    std::filesystem::resize_file(image, bytes);
    format.push_back(image);
    if (runs(std::move(format))) mount({"-o", "loop", image});
}

TemporaryVolume::~TemporaryVolume() {
    if (mounted_) runs({"umount", path()});
}

std::string TemporaryVolume::write(const std::string& relative, std::string_view contents) const {
    return around_.write("volume/" + relative, contents);
}

void TemporaryVolume::mount(std::vector<std::string> how) {
    how.insert(how.begin(), "mount");
    how.push_back(around_.makeFolder("volume"));
    mounted_ = ::geteuid() == 0 && runs(std::move(how));
}

}  // namespace bildkurier
