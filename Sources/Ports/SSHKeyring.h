// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Result.h"
#include "Url.h"

#include <cstdint>
#include <optional>
#include <string>

namespace bildkurier {

/// The application's own key for SFTP servers, and the keys of the servers it has met.
///
/// Threads  Any, but only one change at a time; every call may block while a program runs.
/// Errors   A finished sentence for the window. Queries never fail: they answer absent.
class SSHKeyring {
public:
    using Port = std::optional<std::uint16_t>;  ///< absent: the usual one

    virtual ~SSHKeyring() = default;

    /// Whether there is a key, both its halves.
    virtual bool hasKey() const = 0;

    /// Whether there is a private key, be it without its public half: what a new key would take
    /// the place of, for good.
    virtual bool hasPrivateKey() const = 0;

    /// In one line, as servers want it.
    virtual std::optional<std::string> publicKey() const = 0;

    /// "SHA256:…" and the kind of key in parentheses.
    virtual std::optional<std::string> keyFingerprint() const = 0;

    /// Makes a new key in place of the old one, which is gone even if this fails.
    virtual Result<> generate() = 0;

    /// Takes over the private key in `file`, in place of the old one, which stays if the new
    /// one is no good.
    virtual Result<> importKey(const Url& file) = 0;

    virtual void removeKey() = 0;

    /// Of the key that this server showed at the first connection; absent before that.
    virtual std::optional<std::string> hostFingerprint(const std::string& host,
                                                       Port port) const = 0;

    /// The next connection takes whatever key the server shows.
    virtual void forgetHost(const std::string& host, Port port) = 0;
};

}  // namespace bildkurier
