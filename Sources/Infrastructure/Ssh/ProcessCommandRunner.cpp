// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProcessCommandRunner.h"

#include "Pipe.h"
#include "SigpipeHeldBack.h"
#include "SystemCall.h"
#include "SystemError.h"
#include "Utf8Text.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <expected>
#include <string_view>
#include <utility>

namespace bildkurier {
namespace {

constexpr std::string_view neverAsk = "SSH_ASKPASS_REQUIRE=never";

std::vector<std::string> childEnvironment() {
    const auto name = neverAsk.substr(0, neverAsk.find('=') + 1);
    std::vector<std::string> variables;
    for (char** variable = environ; variable && *variable; ++variable)
        if (!std::string_view(*variable).starts_with(name)) variables.emplace_back(*variable);
    variables.emplace_back(neverAsk);
    return variables;
}

/// As the kernel takes lists of texts. It points into `texts`.
std::vector<char*> pointers(std::vector<std::string>& texts) {
    std::vector<char*> list;
    list.reserve(texts.size() + 1);
    for (auto& text : texts) list.push_back(text.data());
    list.push_back(nullptr);
    return list;
}

bool hasNul(const std::string& text) { return text.contains('\0'); }

/// What a child is started with: its streams, and nothing of this process's other files,
/// signals and terminal.
class Surroundings {
public:
    Surroundings(const FileDescriptor& input, const FileDescriptor& output) {
        posix_spawn_file_actions_init(&files_);
        if (input) {
            posix_spawn_file_actions_adddup2(&files_, input.get(), STDIN_FILENO);
        } else {
            posix_spawn_file_actions_addopen(&files_, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        }
        posix_spawn_file_actions_adddup2(&files_, output.get(), STDOUT_FILENO);
        posix_spawn_file_actions_adddup2(&files_, output.get(), STDERR_FILENO);
        posix_spawn_file_actions_addclosefrom_np(&files_, STDERR_FILENO + 1);

        sigset_t none;
        sigemptyset(&none);
        sigset_t all;
        sigfillset(&all);
        posix_spawnattr_init(&attributes_);
        posix_spawnattr_setsigmask(&attributes_, &none);
        posix_spawnattr_setsigdefault(&attributes_, &all);
        // Without a terminal nothing can ask there, and Ctrl-C does not break off an upload
        // that is to be finished.
        posix_spawnattr_setflags(
            &attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSID);
    }
    Surroundings(const Surroundings&) = delete;
    Surroundings& operator=(const Surroundings&) = delete;
    ~Surroundings() {
        posix_spawnattr_destroy(&attributes_);
        posix_spawn_file_actions_destroy(&files_);
    }

    /// The new process, or an errno value.
    std::expected<pid_t, int> spawn(std::vector<std::string> words,
                                    std::vector<std::string> variables) const {
        if (std::ranges::any_of(words, hasNul)) return std::unexpected(EINVAL);
        pid_t process = 0;
        const int error = posix_spawn(&process, words.front().c_str(), &files_, &attributes_,
                                      pointers(words).data(), pointers(variables).data());
        if (error != 0) return std::unexpected(error);
        return process;
    }

private:
    posix_spawn_file_actions_t files_{};
    posix_spawnattr_t attributes_{};
};

/// Writes as much of `text` as the pipe takes now; closes it when that was all or nobody reads
/// any more.
void feed(FileDescriptor& pipe, std::string_view& text) {
    const SigpipeHeldBack heldBack;
    const auto count = retried([&] { return ::write(pipe.get(), text.data(), text.size()); });
    if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
    if (text.empty() || (count < 0 && errno != EAGAIN)) pipe.close();
}

/// Reads what there is; closes the pipe at its end.
void drain(FileDescriptor& pipe, std::string& text) {
    std::array<char, 65536> block{};
    const auto count = retried([&] { return ::read(pipe.get(), block.data(), block.size()); });
    if (count > 0) {
        text.append(block.data(), static_cast<std::size_t>(count));
    } else {
        pipe.close();
    }
}

/// What is left of the line in which `text`, which is `output` trimmed, ends.
std::string blanksBehind(const std::string& text, std::string_view output) {
    output.remove_prefix(output.rfind(text) + text.size());
    return std::string(output.substr(0, output.find_first_of("\r\n")));
}

}  // namespace

/// A child that runs, and our ends of its streams.
struct ProcessCommandRunner::Child {
    pid_t process = 0;
    FileDescriptor input;  ///< none when it has no input
    FileDescriptor output;
};

ProcessCommandRunner::ProcessCommandRunner() : environment_(childEnvironment()) {}

std::expected<ProcessCommandRunner::Child, int> ProcessCommandRunner::start(
    std::vector<std::string> words, bool withInput) {
    auto output = Pipe::make();
    if (!output) return std::unexpected(output.error());
    Pipe input;
    if (withInput) {
        auto pipe = Pipe::make();
        if (!pipe) return std::unexpected(pipe.error());
        input = std::move(*pipe);
        if (::fcntl(input.writing.get(), F_SETFL, O_NONBLOCK) != 0) return std::unexpected(errno);
    }
    const std::lock_guard lock(mutex_);
    if (ending_) return std::unexpected(ECANCELED);
    const auto process =
        Surroundings(input.reading, output->writing).spawn(std::move(words), environment_);
    if (!process) return std::unexpected(process.error());
    running_.push_back(*process);
    return Child{*process, std::move(input.writing), std::move(output->reading)};
}

/// Feeds the child and reads it, whichever it is ready for, until both streams are closed.
std::string ProcessCommandRunner::talk(Child& child, std::string_view input) const {
    if (input.empty()) child.input.close();
    std::string output;
    while (child.input || child.output) {
        // poll(2) passes over descriptors that are closed, being negative.
        std::array<pollfd, 3> streams{
            pollfd{.fd = child.output.get(), .events = POLLIN, .revents = 0},
            pollfd{.fd = child.input.get(), .events = POLLOUT, .revents = 0},
            pollfd{.fd = patience_.reading.get(), .events = 0, .revents = 0}};
        if (retried([&] { return ::poll(streams.data(), streams.size(), -1); }) < 0) break;
        if (streams[2].revents != 0) break;
        if (streams[0].revents != 0) drain(child.output, output);
        if (streams[1].revents != 0) feed(child.input, input);
    }
    return output;
}

/// Its exit status, or the number of the signal that ended it.
std::int32_t ProcessCommandRunner::statusAtEnd(pid_t process) {
    siginfo_t ignored{};
    // It keeps its number until nobody can send it a signal any more.
    retried(
        [&] { return ::waitid(P_PID, static_cast<id_t>(process), &ignored, WEXITED | WNOWAIT); });
    const std::lock_guard lock(mutex_);
    std::erase(running_, process);
    childEnded_.notify_all();
    int status = 0;
    if (retried([&] { return ::waitpid(process, &status, 0); }) < 0) return -1;
    return WIFSIGNALED(status) ? WTERMSIG(status) : WEXITSTATUS(status);
}

void ProcessCommandRunner::send(int signal) const {
    for (const pid_t process : running_) ::kill(-process, signal);
}

void ProcessCommandRunner::endAll(std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    const auto noneRuns = [this] { return running_.empty(); };
    ending_ = true;
    send(SIGTERM);
    if (childEnded_.wait_for(lock, patience, noneRuns)) return;
    send(SIGKILL);
    patience_.writing.close();
    childEnded_.wait(lock, noneRuns);
}

CommandResult ProcessCommandRunner::run(const std::string& program,
                                        const std::vector<std::string>& arguments,
                                        const std::optional<std::string>& input) {
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    auto child = start(std::move(words), input.has_value());
    if (!child) {
        return {-1, fmt::format("{} lässt sich nicht starten: {}", program,
                                systemError(child.error()).message)};
    }
    const auto output = talk(*child, input ? *input : std::string_view());
    const auto status = statusAtEnd(child->process);
    if (!isUtf8(output)) return {status, {}};
    auto text = trimmed(output);
    auto blanks = blanksBehind(text, output);
    return {status, std::move(text), std::move(blanks)};
}

}  // namespace bildkurier
