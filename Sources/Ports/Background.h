// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MainQueue.h"

namespace bildkurier {

/// Runs blocking work off the main thread. Several tasks may run at once; none waits for
/// another.
class Background {
public:
    virtual ~Background() = default;

    /// Any thread; never runs the task before returning.
    virtual void run(Task task) = 0;
};

}  // namespace bildkurier
