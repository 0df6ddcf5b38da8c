// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandRunner.h"
#include "SSHKeyring.h"
#include "SSHLogin.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {

/// Keeps key and known hosts as files in one private folder, which are its only state. Whatever
/// has to do with cryptography is done by ssh-keygen.
class AppSSHKeyring final : public SSHKeyring {
public:
    /// The folder is made when it is needed first.
    AppSSHKeyring(std::string directory, std::shared_ptr<CommandRunner> runner,
                  std::string keygen = "/usr/bin/ssh-keygen");

    /// In the folder for the user's data.
    static std::string standardDirectory();

    /// How to log in to a server now: with the application's key when there is one, else as the
    /// user does, unless this program `needsOwnKey`.
    SSHLogin login(bool needsOwnKey) const;

    /// Paths; the files need not exist.
    std::string keyFile() const { return path("schluessel"); }
    std::string publicKeyFile() const { return path("schluessel.pub"); }
    std::string knownHosts() const { return path("known_hosts"); }

    bool hasKey() const override;
    bool hasPrivateKey() const override;
    std::optional<std::string> publicKey() const override;
    std::optional<std::string> keyFingerprint() const override;
    Result<> generate() override;
    Result<> importKey(const Url& file) override;
    void removeKey() override;
    std::optional<std::string> hostFingerprint(const std::string& host, Port port) const override;
    void forgetHost(const std::string& host, Port port) override;

    /// The first fingerprint that ssh-keygen lists, with the kind of key in parentheses; absent
    /// where it lists none.
    static std::optional<std::string> fingerprint(std::string_view listing);

    /// How a server is named among the known hosts.
    static std::string hostPattern(const std::string& host, Port port);

private:
    std::string path(std::string_view name) const;
    std::optional<std::string> listedFingerprint(const std::vector<std::string>& arguments) const;
    Result<> prepareDirectory() const;
    /// The halves of a key that is to take the place of the old one. A crash may leave them.
    std::string candidateFile() const { return path("schluessel.neu"); }
    std::string publicCandidateFile() const { return path("schluessel.pub.neu"); }
    /// Puts the private key under test, and its public half, in the place of the old pair.
    Result<> adopt(std::string_view publicKey);
    void removePair();

    std::string directory_;
    std::shared_ptr<CommandRunner> runner_;
    std::string keygen_;
};

}  // namespace bildkurier
