// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Touch.h"

#include <cstdint>

namespace bildkurier::faults {

/// Every call that counts goes through here, one at a time, so that its number and its place
/// in the log tell the true order. A signal handler must not touch what counts.
class Gate {
public:
    enum class Verdict : std::uint8_t { proceed, fail, halve };

    /// Whether `touch` counts. Any thread, also in a signal handler.
    static bool concerns(const Touch& touch);

    /// Blocks while another call is under way.
    explicit Gate(const Touch& touch);
    Gate(const Gate&) = delete;
    Gate& operator=(const Gate&) = delete;
    /// Lets the next one in. What the call did must have been told before.
    ~Gate();

    Verdict verdict() const { return verdict_; }
    /// The errno value for a call that fails.
    static int error();
    /// Writes the log's line: what the call answered, and errno.
    void done(long result, int error);

private:
    const Touch& touch_;
    long number_;
    Verdict verdict_;
};

}  // namespace bildkurier::faults
