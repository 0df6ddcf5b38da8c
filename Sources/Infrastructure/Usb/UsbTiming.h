// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <array>
#include <chrono>

namespace bildkurier {

/// How long things at the USB may take.
struct UsbTiming {
    using Milliseconds = std::chrono::milliseconds;

    /// Between two looks at the bus where nobody tells of changes.
    Milliseconds scan{2000};
    /// A camera's answer.
    Milliseconds answer{20'000};
    /// How long a camera that failed may take to vanish, and so have been unplugged.
    Milliseconds vanishing{1000};
    /// Between attempts to open a camera that another program holds.
    std::array<Milliseconds, 4> busy{Milliseconds(250), Milliseconds(500), Milliseconds(1000),
                                     Milliseconds(2000)};
    /// Between two tellings of how far a listing has come.
    Milliseconds telling{250};
    /// Between two questions for new shots.
    Milliseconds events{1000};
    /// Until cameras attached at the start need no longer be waited for.
    Milliseconds identifying{5000};
    /// What ending waits for cameras that do not answer.
    Milliseconds ending{500};
};

}  // namespace bildkurier
