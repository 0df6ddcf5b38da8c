// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FakeSSHKeyring.h"
#include "FileStore.h"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace bildkurier {

/// Passes everything on to another store, as a server that shows its key first: it becomes known
/// at the first connection with the application's own key, and no other is accepted afterwards.
class FakeServer final : public FileStore {
public:
    FakeServer(std::shared_ptr<FileStore> store, std::shared_ptr<FakeSSHKeyring> keyring)
        : store_(std::move(store)), keyring_(std::move(keyring)) {}

    std::string hostKey = "SHA256:erster (ED25519)";
    std::optional<std::string> refusal;  ///< of every connection, in the client's words
    bool isWritable = true;
    /// Why listings break off before they have found anything.
    std::optional<std::string> breakOfListings;

    /// For the server: on this computer.
    Url stagingDirectory(const Url& destination) override {
        return isServer(destination) ? Url::file("/staging")
                                     : store_->stagingDirectory(destination);
    }
    Url resolved(const Url& url) override { return store_->resolved(url); }
    FileListing listing(const Url& folder) override {
        auto trouble = connect(folder);
        if (!trouble && isServer(folder)) trouble = breakOfListings;
        if (trouble) return {.trouble = std::move(trouble)};
        return store_->listing(folder);
    }
    bool fileExists(const Url& url) override { return connects(url) && store_->fileExists(url); }
    std::optional<std::int64_t> fileSize(const Url& url) override {
        return connects(url) ? store_->fileSize(url) : std::nullopt;
    }
    bool isWritableDirectory(const Url& url) override {
        const bool refused = isServer(url) && !isWritable;
        return connects(url) && !refused && store_->isWritableDirectory(url);
    }
    bool isNetworkVolume(const Url& url) override { return store_->isNetworkVolume(url); }
    std::optional<std::int64_t> availableCapacity(const Url& url) override {
        return connects(url) ? store_->availableCapacity(url) : std::nullopt;
    }
    Result<> createDirectory(const Url& url) override {
        if (const auto complaint = connect(url)) {
            return failure("Ordner lässt sich nicht anlegen: " + *complaint);
        }
        return store_->createDirectory(url);
    }
    Result<> admitsFiles(const Url& folder) override { return store_->admitsFiles(folder); }
    Result<> moveItem(const Url& source, const Url& target) override {
        if (const auto complaint = connect(target)) {
            return failure("Übertragung fehlgeschlagen: " + *complaint);
        }
        return store_->moveItem(source, target);
    }
    void removeItem(const Url& url) override {
        if (connects(url)) store_->removeItem(url);
    }

private:
    static bool isServer(const Url& url) { return url.scheme == "sftp"; }
    bool connects(const Url& url) { return !connect(url); }
    /// What the client complains about, if anything.
    std::optional<std::string> connect(const Url& url) {
        if (!isServer(url)) return std::nullopt;
        if (url.host.empty()) return "Kein Rechner angegeben";
        if (refusal) return refusal;
        if (!keyring_->hasKey()) return std::nullopt;
        const auto known = keyring_->hosts.try_emplace({url.host, url.port}, hostKey).first;
        if (known->second == hostKey) return std::nullopt;
        return "Host key verification failed.";
    }

    std::shared_ptr<FileStore> store_;
    std::shared_ptr<FakeSSHKeyring> keyring_;
};

}  // namespace bildkurier
