// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "LoopbackServer.h"
#include "SSHLogin.h"
#include "TemporaryFolder.h"
#include "Url.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {

/// A real SFTP server on a port of this computer, for one user whom permissions bind: this
/// one, or nobody where this is root. It has keys and folders of its own; the user's are left
/// alone. Tests skip where `isInstalled` is false.
class SshServer {
public:
    enum class Product : std::uint8_t { openSsh, proFtpd };

    static bool isInstalled(Product product = Product::openSsh);

    explicit SshServer(Product product = Product::openSsh);

    LoopbackServer& connection() { return *connection_; }
    /// A folder of the server, by its path below the folder that the user may write to.
    Url url(std::string_view relative) const;
    Url root() const { return url(""); }
    /// The same on this computer.
    std::string path(std::string_view relative) const;
    /// With a key that the server takes and a list of servers that begins empty.
    SSHLogin login() const;
    std::string knownHosts() const { return folder_.path("known_hosts"); }
    /// As if the server had been set up anew.
    void changeHostKey() const;
    /// From now on the server takes no key.
    void refuseKeys() const;
    /// From now on it takes the key of `login` again.
    void acceptKeys() const;
    /// From now on the server takes only so many bytes of a file, or again all of them.
    void limitFiles(std::optional<std::uint64_t> bytes);
    /// Makes a folder that belongs to the server's user.
    void makeFolder(std::string_view relative) const;
    /// Gives what the test itself made to the server's user.
    void handOver(const std::string& path) const;

private:
    TemporaryFolder folder_;
    std::string user_;
    std::vector<std::string> command_;  ///< what starts the server for a connection
    std::unique_ptr<LoopbackServer> connection_;
};

}  // namespace bildkurier
