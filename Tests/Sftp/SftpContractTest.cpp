// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileStoreContract.h"
#include "FileStoreRouter.h"
#include "LocalFileStore.h"
#include "ProcessCommandRunner.h"
#include "SFTPFileStore.h"
#include "SshServer.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <utility>

namespace bildkurier {
namespace {

/// The stores of a program that reaches one server, and folders of this computer.
class ServerStand : public FileStoreStand {
public:
    FileStore& store() override { return *sftp_; }
    FileStore& stagingStore() override { return *local_; }
    Url destination() override { return server_.root(); }
    void write(const Url& file, const std::string& contents) override {
        std::ofstream stream(file.path, std::ios::binary);
        stream.exceptions(std::ios::badbit | std::ios::failbit);
        stream << contents << std::flush;
        server_.handOver(file.path);
    }
    std::optional<std::string> contents(const Url& file) override {
        std::ifstream stream(file.path, std::ios::binary);
        if (!stream) return {};
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

protected:
    FileStoreRouter& router() { return router_; }
    Url localFolder() const { return folder_.url(); }

private:
    SshServer server_;
    TemporaryFolder folder_;
    std::shared_ptr<LocalFileStore> local_ = std::make_shared<LocalFileStore>();
    std::shared_ptr<SFTPFileStore> sftp_ = std::make_shared<SFTPFileStore>(
        std::make_shared<ProcessCommandRunner>(), "/usr/bin/sftp",
        [this] { return server_.login(); }, folder_.url("root"));
    FileStoreRouter router_{local_, sftp_};
};

class RouterStand : public ServerStand {
public:
    FileStore& store() override { return router(); }
    FileStore& stagingStore() override { return router(); }
};

class RouterToFolderStand final : public RouterStand {
public:
    Url destination() override { return localFolder(); }
};

template <class Stand>
FileStoreMaker maker(std::string name) {
    return {std::move(name),
            [] { return SshServer::isInstalled() ? std::make_unique<Stand>() : nullptr; }};
}

const FileStoreMaker everyStore[] = {maker<ServerStand>("Sftp"),
                                     maker<RouterStand>("RouterToServer"),
                                     maker<RouterToFolderStand>("RouterToFolder")};
const FileStoreMaker strictStore = maker<RouterToFolderStand>("RouterToFolder");

INSTANTIATE_TEST_SUITE_P(Server, FileStoreContract, testing::ValuesIn(everyStore), storeName);
INSTANTIATE_TEST_SUITE_P(Server, StrictFileStoreContract, testing::Values(strictStore), storeName);

}  // namespace
}  // namespace bildkurier
