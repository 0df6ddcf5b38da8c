// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"

#include <string>
#include <string_view>

namespace bildkurier {

/// Carries short lines between this process and its children.
class LinePipe {
public:
    LinePipe();

    void write(std::string_view line) const;

    /// The next line; "nothing" when none comes within ten seconds.
    std::string read() const;

    /// The end that is written to, for other programs.
    int writingEnd() const { return writing_.get(); }

private:
    FileDescriptor reading_;
    FileDescriptor writing_;
};

}  // namespace bildkurier
