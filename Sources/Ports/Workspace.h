// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Url.h"

namespace bildkurier {

/// The user's desktop. Main thread.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Shows the folder in the file manager. Whether that works is not reported.
    virtual void open(const Url& folder) = 0;
};

}  // namespace bildkurier
