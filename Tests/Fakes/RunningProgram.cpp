// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "RunningProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <future>
#include <map>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace bildkurier {
namespace {

constexpr int closed = -1;

/// A pipe whose writing end is the child's.
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
            if (end != closed) close(end);
        }
    }
    int takeReading() { return std::exchange(ends[0], closed); }
    int writing() const { return ends[1]; }

    std::array<int, 2> ends{closed, closed};
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

/// As poll(2) wants them.
int millisecondsUntil(std::chrono::steady_clock::time_point deadline) {
    const auto left = deadline - std::chrono::steady_clock::now();
    return std::max(0,
                    static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count()));
}

/// Whether the process ends before the deadline.
bool endsBefore(pid_t process, std::chrono::steady_clock::time_point deadline) {
    const auto descriptor = static_cast<int>(syscall(SYS_pidfd_open, process, 0));
    pollfd ended{.fd = descriptor, .events = POLLIN, .revents = 0};
    poll(&ended, 1, millisecondsUntil(deadline));
    close(descriptor);
    return ended.revents != 0;
}

}  // namespace

RunningProgram::RunningProgram(const ProgramCall& call) : deadline_(Clock::now() + call.deadline) {
    Pipe out;
    Pipe err;
    std::vector<std::string> words{call.path};
    words.insert(words.end(), call.arguments.begin(), call.arguments.end());
    auto variables = environmentWith(call.environment);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, out.writing(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err.writing(), STDERR_FILENO);
    const int error = posix_spawn(&process_, call.path.c_str(), &actions, nullptr,
                                  pointers(words).data(), pointers(variables).data());
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0) throw std::system_error(error, std::generic_category(), call.path);
    outputs_ = {out.takeReading(), err.takeReading()};
}

RunningProgram::~RunningProgram() {
    send(SIGKILL);
    if (process_ > 0) waitpid(process_, nullptr, 0);
    for (const int output : outputs_) {
        if (output != closed) close(output);
    }
}

bool RunningProgram::waitUntilItSays(const std::string& text) {
    while (!result_.out.contains(text)) {
        if (!listen()) return false;
    }
    return true;
}

bool RunningProgram::waitUntilStopped() {
    auto stopped = std::async(std::launch::async, [process = process_] {
        siginfo_t change{};
        waitid(P_PID, static_cast<id_t>(process), &change, WSTOPPED | WEXITED | WNOWAIT);
        return change.si_code == CLD_STOPPED;
    });
    if (stopped.wait_until(deadline_) != std::future_status::ready) send(SIGKILL);
    return stopped.get();
}

void RunningProgram::send(int signal) const {
    if (process_ > 0) kill(process_, signal);
}

bool RunningProgram::hasEnded() const {
    siginfo_t end{};
    waitid(P_PID, static_cast<id_t>(process_), &end, WEXITED | WNOHANG | WNOWAIT);
    return end.si_pid != 0;
}

ProgramResult RunningProgram::finish() {
    while (listen()) {
    }
    result_.hung = !isSilent() || !endsBefore(process_, deadline_);
    if (result_.hung) send(SIGKILL);
    int status = 0;
    waitpid(std::exchange(process_, -1), &status, 0);
    if (WIFEXITED(status)) result_.exitStatus = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) result_.signal = WTERMSIG(status);
    return result_;
}

bool RunningProgram::listen() {
    const int left = millisecondsUntil(deadline_);
    if (left == 0 || isSilent()) return false;
    std::array<pollfd, 2> sources{pollfd{.fd = outputs_[0], .events = POLLIN, .revents = 0},
                                  pollfd{.fd = outputs_[1], .events = POLLIN, .revents = 0}};
    poll(sources.data(), sources.size(), left);
    const std::array texts{&result_.out, &result_.err};
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (sources.at(i).revents == 0 || drain(outputs_.at(i), *texts.at(i))) continue;
        close(std::exchange(outputs_.at(i), closed));
    }
    return true;
}

bool RunningProgram::isSilent() const {
    return std::ranges::all_of(outputs_, [](int output) { return output == closed; });
}

}  // namespace bildkurier
