// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ProcessCommandRunner.h"
#include "SFTPFileStore.h"
#include "SshServer.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

namespace bildkurier {

/// A store, and a server of its own.
class SftpServerTest : public testing::Test {
protected:
    using Traffic = LoopbackServer::Traffic;
    static constexpr auto unlimited = LoopbackServer::unlimited;

    void SetUp() override {
        if (!SshServer::isInstalled()) GTEST_SKIP() << "sshd fehlt (Paket openssh-server)";
        server = std::make_unique<SshServer>();
    }

    /// What the server holds.
    Tree serversTree() const { return tree(server->path("")); }
    /// Uploads as an import does, from `staged()`.
    Result<> bring(const std::string& name, const std::string& contents) {
        return store->moveItem(Url::file(local.write("staged", contents)), server->url(name));
    }
    std::string staged() const { return local.path("staged"); }
    /// Has the client carry out `script` on the server.
    CommandResult tellClient(const std::string& script) const {
        const auto url = server->root();
        return ProcessCommandRunner().run(
            "/usr/bin/sftp",
            SFTPFileStore::arguments(*SFTPFileStore::account(url), url.port, server->login()),
            script);
    }
    /// The client as it is, with less patience for a connection to come about.
    std::string impatientClient() const {
        auto client = local.write("client",
                                  "#!/bin/bash\nexec /usr/bin/sftp "
                                  "\"${@/ConnectTimeout=10/ConnectTimeout=1}\"\n");
        std::filesystem::permissions(client, std::filesystem::perms::owner_all);
        return client;
    }
    static constexpr auto patience = std::chrono::seconds(1);

    /// A store that reaches the server in this way.
    std::shared_ptr<SFTPFileStore> storeOver(std::shared_ptr<CommandRunner> runner,
                                             std::string client = "/usr/bin/sftp") {
        return std::make_shared<SFTPFileStore>(
            std::move(runner), std::move(client), [this] { return server->login(); },
            local.url("root"));
    }

    std::unique_ptr<SshServer> server;
    TemporaryFolder local;
    std::shared_ptr<SFTPFileStore> store = storeOver(std::make_shared<ProcessCommandRunner>());
};

}  // namespace bildkurier
