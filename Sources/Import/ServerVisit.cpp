// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ServerVisit.h"

#include "HostKeyMismatch.h"

namespace bildkurier {

namespace {

constexpr auto otherHostKey =
    "Der Server zeigt einen anderen Schlüssel als beim ersten Verbinden. Nur wenn der Server neu "
    "eingerichtet wurde: gespeicherten Server-Schlüssel vergessen.";

std::optional<std::string> hostFingerprint(const SSHKeyring* keyring, const Url& server) {
    if (!keyring || !keyring->hasKey()) return std::nullopt;
    return keyring->hostFingerprint(server.host, server.port);
}

}  // namespace

ServerVisit ServerVisit::pay(const Url& server, const SSHKeyring* keyring,
                             const std::function<Result<>()>& reach) {
    ServerVisit visit;
    const auto before = hostFingerprint(keyring, server);
    const auto reached = reach();
    visit.fingerprint = hostFingerprint(keyring, server);
    visit.isFirst = !before && visit.fingerprint;
    if (reached) return visit;
    visit.showsOtherKey = reached.error().message.find(hostKeyMismatch) != std::string::npos;
    visit.error = visit.showsOtherKey ? Error{otherHostKey} : reached.error();
    return visit;
}

}  // namespace bildkurier
