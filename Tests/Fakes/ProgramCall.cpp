// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramCall.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <string_view>
#include <system_error>
#include <utility>

namespace bildkurier {
namespace {

using Clock = std::chrono::steady_clock;

/// The end of a pipe that is ours; its other end is the child's.
struct Pipe {
    Pipe() {
        if (pipe2(ends.data(), O_CLOEXEC) != 0) {
            throw std::system_error(errno, std::generic_category(), "pipe2");
        }
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        for (const int end : ends) {
            if (end >= 0) close(end);
        }
    }
    void closeWriting() { close(std::exchange(ends[1], -1)); }

    std::array<int, 2> ends{-1, -1};
};

std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> found;
    found.reserve(texts.size() + 1);
    for (auto& text : texts) found.push_back(text.data());
    found.push_back(nullptr);
    return found;
}

std::vector<std::string> environmentWith(const std::map<std::string, std::string>& added) {
    std::vector<std::string> all;
    for (char** entry = environ; *entry; ++entry) {
        const std::string_view text = *entry;
        if (!added.contains(std::string(text.substr(0, text.find('='))))) all.emplace_back(text);
    }
    for (const auto& [name, value] : added)
        all.push_back(std::string(name).append("=").append(value));
    return all;
}

/// Takes what can be read now; false at the end.
bool drain(int descriptor, std::string& into) {
    std::array<char, 65'536> bytes;
    const ssize_t count = read(descriptor, bytes.data(), bytes.size());
    if (count > 0) into.append(bytes.data(), static_cast<std::size_t>(count));
    return count > 0;
}

/// Reads both until they end, or until the deadline: then false.
bool readToTheEnd(std::array<pollfd, 2> sources, const std::array<std::string*, 2>& texts,
                  Clock::time_point deadline) {
    while (sources[0].fd >= 0 || sources[1].fd >= 0) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (left.count() <= 0) return false;
        poll(sources.data(), sources.size(), static_cast<int>(left.count()));
        for (std::size_t i = 0; i < sources.size(); ++i) {
            if (sources.at(i).revents == 0) continue;
            if (!drain(sources.at(i).fd, *texts.at(i))) sources.at(i).fd = -1;
        }
    }
    return true;
}

/// Whether the process ends before the deadline.
bool endsBefore(pid_t process, Clock::time_point deadline) {
    const auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    pollfd ended{.fd = descriptor, .events = POLLIN, .revents = 0};
    poll(&ended, 1, std::max(0, static_cast<int>(left.count())));
    close(descriptor);
    return ended.revents != 0;
}

}  // namespace

ProgramResult ProgramCall::run() const {
    Pipe out;
    Pipe err;
    std::vector<std::string> words{path};
    words.insert(words.end(), arguments.begin(), arguments.end());
    auto variables = environmentWith(environment);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out.ends[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err.ends[1], STDERR_FILENO);
    pid_t process = 0;
    const int error = posix_spawn(&process, path.c_str(), &actions, nullptr, pointers(words).data(),
                                  pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::system_error(error, std::generic_category(), path);
    out.closeWriting();
    err.closeWriting();

    ProgramResult result;
    const auto end = Clock::now() + deadline;
    const std::array<pollfd, 2> sources{pollfd{.fd = out.ends[0], .events = POLLIN, .revents = 0},
                                        pollfd{.fd = err.ends[0], .events = POLLIN, .revents = 0}};
    result.hung =
        !readToTheEnd(sources, {&result.out, &result.err}, end) || !endsBefore(process, end);
    if (result.hung) kill(process, SIGKILL);
    int status = 0;
    waitpid(process, &status, 0);
    if (WIFEXITED(status)) result.exitStatus = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
    return result;
}

bool succeeds(std::vector<std::string> command) {
    return ProgramCall{.path = "/usr/bin/env", .arguments = std::move(command)}.run().exitStatus ==
           0;
}

}  // namespace bildkurier
