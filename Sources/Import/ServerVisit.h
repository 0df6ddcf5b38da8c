// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Result.h"
#include "SSHKeyring.h"
#include "Url.h"

#include <functional>
#include <optional>
#include <string>

namespace bildkurier {

/// How a connection to a server went, and which key the server showed with it.
struct ServerVisit {
    std::optional<Error> error;              ///< absent when all went well
    std::optional<std::string> fingerprint;  ///< of the server's key that is stored since
    bool isFirst = false;                    ///< that key was stored by this visit
    bool showsOtherKey = false;              ///< not the one that is stored; `error` says so

    /// Connects by calling `reach`. Blocks; without `keyring` nothing is known of keys.
    static ServerVisit pay(const Url& server, const SSHKeyring* keyring,
                           const std::function<Result<>()>& reach);
};

}  // namespace bildkurier
