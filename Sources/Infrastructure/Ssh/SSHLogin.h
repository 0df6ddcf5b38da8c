// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Url.h"

#include <cstdint>
#include <utility>

namespace bildkurier {

/// Who this program is to an SSH server, and whom it trusts.
struct SSHLogin {
    enum class Kind : std::uint8_t {
        appKey,      ///< only the application's own key and list of servers
        userSSH,     ///< the user's own configuration, agent and keys
        missingKey,  ///< the application's key is required and not there: no connection
    };

    Kind kind;
    Url keyFile = {};     ///< the private key; only for `appKey`
    Url knownHosts = {};  ///< where servers' keys are recorded; only for `appKey`

    static SSHLogin appKey(Url keyFile, Url knownHosts) {
        return {Kind::appKey, std::move(keyFile), std::move(knownHosts)};
    }
    static SSHLogin userSSH() { return {Kind::userSSH}; }
    static SSHLogin missingKey() { return {Kind::missingKey}; }

    bool operator==(const SSHLogin&) const = default;
};

}  // namespace bildkurier
