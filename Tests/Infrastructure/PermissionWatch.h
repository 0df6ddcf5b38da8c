// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"

#include <string>
#include <vector>

namespace bildkurier {

/// Sees what is created in a folder and whose permissions are changed there, while nothing is
/// taken away from the permissions with which this process and its children create files.
class PermissionWatch {
public:
    explicit PermissionWatch(const std::string& folder);
    PermissionWatch(const PermissionWatch&) = delete;
    PermissionWatch& operator=(const PermissionWatch&) = delete;
    ~PermissionWatch();

    /// The names of what was created since the last call, and, with "!" behind it, of that whose
    /// permissions were changed after it was created; in order.
    std::vector<std::string> seen() const;

private:
    FileDescriptor events_;
    unsigned maskBefore_;
};

}  // namespace bildkurier
