// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <sys/types.h>

#include <functional>

namespace bildkurier {

/// A copy of this process that does one thing; it dies with this object at the latest.
class ChildProcess {
public:
    /// `work` answers whether it went well; what it throws means no.
    explicit ChildProcess(const std::function<bool()>& work);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    ~ChildProcess();

    /// Waits until it has ended, and answers what `work` did.
    bool wentWell();

    /// Ends it as nothing can prevent, and waits for that.
    void kill();

private:
    pid_t process_;
};

}  // namespace bildkurier
