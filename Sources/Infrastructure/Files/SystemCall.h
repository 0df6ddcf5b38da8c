// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cerrno>

namespace bildkurier {

/// Makes a system call that answers -1 and errno when it fails, again when a signal came
/// between.
template <class Call>
auto retried(Call call) {
    while (true) {
        const auto answer = call();
        if (answer != -1 || errno != EINTR) return answer;
    }
}

}  // namespace bildkurier
