// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Result.h"

namespace bildkurier {

/// Lets one import at a time run per user, whichever processes ask. Main thread.
class RunLock {
public:
    virtual ~RunLock() = default;

    /// Fails at once, with the sentence to show, when another import holds it. One that is held
    /// already stays held.
    virtual Result<> acquire() = 0;
    virtual void release() = 0;
};

}  // namespace bildkurier
