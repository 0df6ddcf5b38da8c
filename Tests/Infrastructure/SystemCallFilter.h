// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <linux/seccomp.h>

#include <functional>
#include <string>
#include <vector>

namespace bildkurier {

/// Answers 0 to let a system call happen, the errno value with which it fails instead, or
/// `doNothing`.
using SystemCallRule = std::function<int(const seccomp_data& call)>;

/// The call has no effect and answers 0: a file ends, or takes no bytes.
constexpr int doNothing = -1;

/// The path that a call like openat(2) is given in its second argument.
std::string pathArgument(const seccomp_data& call);

/// Runs `action` on a thread of its own whose system calls numbered `calls` are put to
/// `rule` first, on the caller's thread, while that thread waits: so a test may also change
/// something just before a call. False where the kernel does not offer this; `action` has
/// then not run.
[[nodiscard]] bool runFiltered(const std::vector<int>& calls, const SystemCallRule& rule,
                               const std::function<void()>& action);

}  // namespace bildkurier
