// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Handle.h"
#include "Url.h"

namespace bildkurier {

/// Permission to read a file that the user has just picked, where the system asks for one.
class FileAccess {
public:
    virtual ~FileAccess() = default;

    /// Holds until the handle is dropped; empty where there was nothing to take up. Any thread.
    [[nodiscard]] virtual Handle start(const Url& file) = 0;
};

}  // namespace bildkurier
