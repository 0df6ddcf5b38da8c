// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "SSHKeyring.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {

/// A keyring in memory, for one thread.
class FakeSSHKeyring final : public SSHKeyring {
public:
    using Server = std::pair<std::string, Port>;

    std::optional<std::string> key;  ///< the public one
    bool isPublicHalfReadable = true;
    std::optional<std::string> fingerprint;     ///< of the key; none: made of it
    std::map<Server, std::string> hosts;        ///< fingerprints of their keys
    std::optional<Error> error;                 ///< why nothing can be changed
    std::vector<Url> imported;                  ///< what was to be taken over
    mutable std::vector<Server> fingerprinted;  ///< servers asked for
    std::vector<Server> forgotten;
    int generated = 0;
    std::function<void()> onImport = [] {};

    bool hasKey() const override { return key.has_value(); }
    bool hasPrivateKey() const override { return key.has_value(); }
    std::optional<std::string> publicKey() const override {
        return isPublicHalfReadable ? key : std::nullopt;
    }
    std::optional<std::string> keyFingerprint() const override {
        if (!publicKey()) return std::nullopt;
        return fingerprint.value_or("SHA256:" + *key + " (ED25519)");
    }
    Result<> generate() override {
        key.reset();
        if (error) return std::unexpected(*error);
        isPublicHalfReadable = true;
        key = "ssh-ed25519 neu" + std::to_string(++generated) + " bildkurier";
        return {};
    }
    Result<> importKey(const Url& file) override {
        imported.push_back(file);
        onImport();
        if (error) return std::unexpected(*error);
        key = "ssh-ed25519 " + file.path;
        return {};
    }
    void removeKey() override {
        if (!error) key.reset();
    }
    std::optional<std::string> hostFingerprint(const std::string& host, Port port) const override {
        fingerprinted.emplace_back(host, port);
        const auto found = hosts.find({host, port});
        return found == hosts.end() ? std::nullopt : std::optional(found->second);
    }
    void forgetHost(const std::string& host, Port port) override {
        forgotten.emplace_back(host, port);
        if (!error) hosts.erase({host, port});
    }
};

}  // namespace bildkurier
