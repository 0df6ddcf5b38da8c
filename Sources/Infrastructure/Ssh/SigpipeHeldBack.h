// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <csignal>

namespace bildkurier {

/// Keeps this thread from being ended by writing to a pipe that nobody reads any more, for as
/// long as this lives. The write then fails with EPIPE alone.
class SigpipeHeldBack {
public:
    SigpipeHeldBack();
    SigpipeHeldBack(const SigpipeHeldBack&) = delete;
    SigpipeHeldBack& operator=(const SigpipeHeldBack&) = delete;
    ~SigpipeHeldBack();

private:
    sigset_t before_{};
    bool wasPending_ = false;
};

}  // namespace bildkurier
