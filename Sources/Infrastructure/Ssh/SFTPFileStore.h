// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CommandRunner.h"
#include "ContentReader.h"
#include "FileStore.h"
#include "ListingRecord.h"
#include "LocalFileStore.h"
#include "SSHLogin.h"
#include "SftpBatch.h"
#include "SftpKeyWalk.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {

/// Folders on SFTP servers, reached through the system's sftp client: every operation is one
/// run of it, a listing one for each level of folders. Files are staged on this computer.
/// Holds no connection, and of the servers only where it asked in vain: whether a file exists, or
/// what a folder holds.
///
/// A server has ten seconds to be reached. One that stops answering later is waited for until it
/// answers, its connection is closed, or the program ends.
///
/// Where a `listing` breaks off, nothing is put below that folder until it has been listed to the
/// end. A folder further down that cannot be listed bars itself alone.
///
/// Unlike a local folder, a server may let `moveItem` replace a file that is there: the client's
/// plain "rename" works on every server, but on some it replaces. So `moveItem` relies on
/// `fileExists` having been asked, and asks again itself where that had no answer. What somebody
/// else puts under the name between the question and the end of the upload may be lost, and so is
/// whatever file or folder has the file's name with ".part" behind it, under which the upload
/// arrives. `removeItem` removes a file or an empty folder.
class SFTPFileStore final : public FileStore {
public:
    /// One line of a long listing.
    struct Entry {
        bool isDirectory;
        std::int64_t size;  ///< bytes
        std::string name;   ///< the last path component

        bool operator==(const Entry&) const = default;
    };

    /// Asked before every run, from the thread of the call.
    using Login = std::function<SSHLogin()>;

    static constexpr std::string_view missingKeyMessage =
        "Noch kein ssh-Schlüssel: unter Ziel → SFTP „Schlüssel erzeugen“ oder „übernehmen“.";

    /// `sftp` is the path of the client, `stagingRoot` a folder of this computer.
    SFTPFileStore(std::shared_ptr<CommandRunner> runner, std::string sftp, Login login,
                  Url stagingRoot);

    Url stagingDirectory(const Url& destination) override;
    FileListing listing(const Url& folder) override;
    bool fileExists(const Url& url) override;
    std::optional<std::int64_t> fileSize(const Url& url) override;
    /// Puts an empty file there and removes it.
    bool isWritableDirectory(const Url& url) override;
    /// Waits for the files with which that tries to be removed again: before clients are ended
    /// that would leave them.
    void awaitProbes(std::chrono::milliseconds patience = std::chrono::seconds(2));
    bool isNetworkVolume(const Url& url) override;
    std::optional<std::int64_t> availableCapacity(const Url& url) override;
    Result<> createDirectory(const Url& url) override;
    Result<> admitsFiles(const Url& folder) override;
    /// Uploads the local file `source`. It goes once the server says that all of it is there.
    Result<> moveItem(const Url& source, const Url& target) override;
    void removeItem(const Url& url) override;

    /// The files whose keys `listing` answers, and the folders below that could not be listed;
    /// fails where `folder` itself cannot, or the server does not answer.
    Result<ContentReader::Listing> files(const Url& folder);
    /// Copies of `files`, which are of one server, in the local folder `staging`, which exists:
    /// named `prefix` and their positions, of the size that they should have. What bore such a name
    /// goes before. In their order.
    std::vector<Result<PlacedFile>> download(std::span<const ContentReader::File> files,
                                             const Url& staging, const std::string& prefix);

    /// "user@host", or the host alone; absent without a host.
    static std::optional<std::string> account(const Url& url);
    /// The client's arguments.
    static std::vector<std::string> arguments(const std::string& account,
                                              std::optional<std::uint16_t> port,
                                              const SSHLogin& login);
    /// The client's argument that means exactly `path`.
    static std::string quoted(std::string_view path);
    /// The same for "ls", to which braces mean alternatives even between quotes.
    static std::string quotedForListing(std::string_view path);
    /// What makes `path` and every folder above it that is missing.
    static SftpCommands makeDirectories(std::string_view path);
    /// The lines of a listing that are entries.
    static std::vector<Entry> entries(std::string_view listing);
    /// The line of the client's output that says why it failed; all of it if there is none.
    static std::string message(const std::string& output);

private:
    class UnderWay;

    CommandResult batch(const Url& server, const SftpCommands& commands);
    /// Fails where it breaks off or `folder` itself cannot be listed.
    Result<> walk(const Url& folder, SftpKeyWalk& walk);
    /// Whether there is anything; an error where the server did not say.
    Result<bool> look(const Url& url);
    /// Makes sure that `target` is free if that was asked in vain before.
    Result<> dispelDoubt(const Url& target);
    /// Fails below a folder that was not listed to the end: what is there might be loaded twice.
    Result<> knowWhatIsThere(const Url& url) const;

    std::shared_ptr<CommandRunner> runner_;
    std::string sftp_;
    Login login_;
    Url stagingRoot_;
    LocalFileStore localStore_;
    ListingRecord record_;
    std::mutex doubtsMutex_;
    std::vector<Url> doubts_;  ///< of which it is not known whether anything is there
    std::mutex probesMutex_;
    std::condition_variable probesEnded_;
    int probes_ = 0;  ///< under way
};

}  // namespace bildkurier
