// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"
#include "Handle.h"

#include <chrono>
#include <functional>

namespace bildkurier {

using Task = std::function<void()>;

/// Seconds.
using Duration = std::chrono::duration<double>;

/// A reading of a monotonic clock.
using Instant = std::chrono::time_point<std::chrono::steady_clock, Duration>;

/// The main thread's run loop, its timers and its clocks.
class MainQueue {
public:
    virtual ~MainQueue() = default;

    /// Later, in order, never before returning. Any thread.
    virtual void post(Task task) = 0;

    /// Until the handle is dropped, which the task itself may do. Main thread.
    [[nodiscard]] virtual Handle after(Duration delay, Task task) = 0;
    [[nodiscard]] virtual Handle every(Duration interval, Task task) = 0;

    /// Monotonic. Any thread.
    virtual Instant now() const = 0;

    /// The wall clock. Any thread.
    virtual Date date() const = 0;
};

}  // namespace bildkurier
