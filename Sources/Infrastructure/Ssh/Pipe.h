// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"

#include <expected>

namespace bildkurier {

/// A pipe between this process and a child. No child has its ends unless it is given them, and
/// neither end is one of the three standard streams, even where this process has none.
struct Pipe {
    FileDescriptor reading;
    FileDescriptor writing;

    /// Or an errno value.
    static std::expected<Pipe, int> make();
};

}  // namespace bildkurier
