// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "RunLock.h"

#include <string>
#include <vector>

namespace bildkurier {

/// A lock of the user, in several places: processes that agree on one of them see each other, even
/// if their environments differ. It ends with this object, and with the process however that ends.
class ImportLock final : public RunLock {
public:
    /// Lock files; those that cannot be made do not count as long as there is another.
    explicit ImportLock(std::vector<std::string> paths = standardPaths());

    /// import.lock in the user's folder for what matters only while processes run, and where
    /// uploads are staged, unless a server holds that: locks there may block.
    static std::vector<std::string> standardPaths();

    Result<> acquire() override;
    void release() override;

private:
    std::vector<std::string> paths_;
    std::vector<FileDescriptor> files_;  ///< locked while open
};

}  // namespace bildkurier
