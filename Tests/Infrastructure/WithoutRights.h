// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <unistd.h>

namespace bildkurier {

/// Takes from this process the rights of an administrator, to whom nothing is unreadable, for
/// as long as this lives.
class WithoutRights {
public:
    WithoutRights();
    WithoutRights(const WithoutRights&) = delete;
    WithoutRights& operator=(const WithoutRights&) = delete;
    ~WithoutRights();

private:
    uid_t user_;
};

}  // namespace bildkurier
