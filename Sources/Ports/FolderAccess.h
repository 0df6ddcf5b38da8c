// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Url.h"

#include <optional>

namespace bildkurier {

/// Keeps the permission to use the destination folder, over restarts too. Main thread.
class FolderAccess {
public:
    virtual ~FolderAccess() = default;

    /// The user has just picked this folder.
    virtual void remember(const Url& folder) = 0;

    /// The remembered folder, its permission taken up again; absent when there is none.
    virtual std::optional<Url> restore() = 0;

    /// Whether the permission held covers `url`.
    virtual bool isGranted(const Url& url) const = 0;
};

}  // namespace bildkurier
