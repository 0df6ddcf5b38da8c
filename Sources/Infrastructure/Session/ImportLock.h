// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "RunLock.h"

#include <string>

namespace bildkurier {

/// A lock file of the user. The lock ends with this object, and with the process however that
/// ends.
class ImportLock final : public RunLock {
public:
    explicit ImportLock(std::string path = standardPath());

    /// import.lock in the user's folder for what matters only while processes run.
    static std::string standardPath();

    Result<> acquire() override;
    void release() override;

private:
    std::string path_;
    FileDescriptor file_;  ///< locked while open
};

}  // namespace bildkurier
