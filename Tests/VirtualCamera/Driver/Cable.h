// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Plug.h"
#include "PtpResponder.h"

#include <cstdint>
#include <span>
#include <vector>

namespace bildkurier {

/// The connection to a virtual camera while it is open, with all that goes wrong on the way.
/// Answers are those of libgphoto2's ports.
class Cable {
public:
    /// `claim` is the descriptor by which nobody else opens the camera meanwhile.
    Cable(Plug plug, int claim);
    Cable(const Cable&) = delete;
    Cable& operator=(const Cable&) = delete;
    ~Cable();

    int write(std::span<const char> bytes);
    int read(std::span<char> bytes, int milliseconds);
    int event(std::span<char> bytes, int milliseconds);
    /// Forgets what was under way.
    int reset();
    int check() const;

private:
    bool isFaultDue(std::size_t count) const;
    int fault(int milliseconds);

    Plug plug_;
    int claim_;
    PtpResponder responder_;
    std::vector<std::uint8_t> request_;
    std::uint64_t sent_ = 0;
};

}  // namespace bildkurier
