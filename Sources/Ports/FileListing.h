// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileKey.h"

#include <optional>
#include <string>

namespace bildkurier {

/// What a folder was found to hold.
struct FileListing {
    FileKeys keys;
    /// Why something may lack, as a clause; absent when nothing does, as far as one can tell.
    std::optional<std::string> trouble;

    bool operator==(const FileListing&) const = default;
};

}  // namespace bildkurier
