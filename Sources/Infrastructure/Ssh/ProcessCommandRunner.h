// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandRunner.h"
#include "Pipe.h"

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <expected>
#include <mutex>
#include <string>
#include <vector>

namespace bildkurier {

/// Runs programs as child processes. They have the environment that this process had when the
/// runner was made, in which they are told never to ask anybody for a password, and nothing else
/// of it: no open file, no blocked or ignored signal.
class ProcessCommandRunner final : public CommandRunner {
public:
    ProcessCommandRunner();

    CommandResult run(const std::string& program, const std::vector<std::string>& arguments,
                      const std::optional<std::string>& input) override;

    /// Ends what runs, with all that it started, and runs nothing any more. Programs are asked
    /// to end, and killed when they have not done so for `patience`. Blocks until every `run` is
    /// about to return. Any thread.
    void endAll(std::chrono::milliseconds patience = std::chrono::seconds(2));

private:
    struct Child;

    /// Or an errno value.
    std::expected<Child, int> start(std::vector<std::string> words, bool withInput);
    std::string talk(Child& child, std::string_view input) const;
    std::int32_t statusAtEnd(pid_t process);
    void send(int signal) const;

    /// Read once: another thread may change this process's own while programs are started.
    const std::vector<std::string> environment_;
    std::mutex mutex_;
    std::condition_variable childEnded_;
    std::vector<pid_t> running_;  ///< each leads a group of its own with what it starts
    bool ending_ = false;
    /// Closed when nobody is to be waited for any more.
    Pipe patience_ = Pipe::make().value_or(Pipe());
};

}  // namespace bildkurier
