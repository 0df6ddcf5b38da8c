// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileListing.h"
#include "Result.h"
#include "Url.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace bildkurier {

/// Where imported files end up: a folder on this computer or on an SFTP server.
///
/// Threads  Any; every call blocks, for seconds where the folder is remote.
/// Sizes    Bytes.
/// Errors   A finished sentence for the window. Queries never fail: they answer
///          empty, false or absent.
class FileStore {
public:
    virtual ~FileStore() = default;

    /// The folder where downloads to `destination` are written until they are complete. It
    /// may lie elsewhere than in the destination. Nothing is created.
    virtual Url stagingDirectory(const Url& destination) = 0;

    /// `url` by the one path that leads there through no link, as far as it exists: two
    /// destinations of the same path are the same.
    virtual Url resolved(const Url& url) { return url; }

    /// Every regular file below `folder`, at any depth, hidden ones left out. A folder that cannot
    /// be read is empty.
    virtual FileListing listing(const Url& folder) = 0;

    /// The keys of that.
    FileKeys existingFileKeys(const Url& folder) { return listing(folder).keys; }

    /// Whether there is anything, file or folder.
    virtual bool fileExists(const Url& url) = 0;

    /// Absent when unknown or when nothing is there.
    virtual std::optional<std::int64_t> fileSize(const Url& url) = 0;

    /// Whether it is an existing folder into which this process may write.
    virtual bool isWritableDirectory(const Url& url) = 0;

    /// Whether it lies on a volume that is not this computer's own; false when unknown.
    virtual bool isNetworkVolume(const Url& url) = 0;

    /// Free bytes on the volume that holds it; absent when unknown.
    virtual std::optional<std::int64_t> availableCapacity(const Url& url) = 0;

    /// Creates the folder and all missing parents. One that exists is a success.
    virtual Result<> createDirectory(const Url& url) = 0;

    /// Fails where nothing may be put into `folder` before it has been listed anew. Does not block.
    virtual Result<> admitsFiles(const Url& /*folder*/) { return {}; }

    /// Gives the file `source` the name `target`. `target` appears complete or not at all,
    /// even after a crash, and replaces nothing, as far as the volume can see to that.
    virtual Result<> moveItem(const Url& source, const Url& target) = 0;

    /// Removes a file or a whole folder tree, as far as it can; a missing one is none.
    virtual void removeItem(const Url& url) = 0;

    /// A name like `name` under which nothing exists yet in `folder`: `name` itself, else
    /// with "_1", "_2", … before its extension.
    std::string freeName(std::string_view name, const Url& folder);
};

}  // namespace bildkurier
