// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "Result.h"

#include <string>

namespace bildkurier {

/// Lets one import at a time run per user, whichever processes and objects ask. Ends with this
/// object, and with the process however that ends.
class ImportLock {
public:
    explicit ImportLock(std::string path = standardPath());

    /// import.lock in the user's folder for what matters only while processes run.
    static std::string standardPath();

    /// Fails at once, with the sentence to show, when another import holds it. One that is held
    /// already stays held.
    Result<> acquire();
    void release();

private:
    std::string path_;
    FileDescriptor file_;  ///< locked while open
};

}  // namespace bildkurier
