// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "PlacedFile.h"
#include "Result.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace bildkurier {

/// Reads what lies in a destination, on this computer or on an SFTP server, and writes nothing
/// there.
///
/// Threads  Any, several at once; every call blocks, for long where there is much to read.
/// Sizes    Bytes.
/// Errors   A clause for people.
class ContentReader {
public:
    struct File {
        PlacedFile place;
        std::int64_t size = 0;

        bool operator==(const File&) const = default;
    };

    struct Listing {
        std::vector<File> files;
        std::vector<std::string> unreadable;  ///< folders below, as far as that is told
    };

    /// Told how many bytes more have been compared; false stops the comparison.
    using Step = std::function<bool(std::int64_t)>;

    virtual ~ContentReader() = default;

    /// Every regular file below `folder`, at any depth that an import looks into, hidden ones
    /// left out. A folder that is missing has none; fails where a server does not answer.
    virtual Result<Listing> files(const Url& folder) = 0;

    /// Why what lies in `folder` may be less safe there than it seems: finished sentences. `card`
    /// is the card, where it is a folder of this computer.
    virtual std::vector<std::string> cautions(const Url& folder,
                                              const std::optional<Url>& card) = 0;

    /// Where each of `files`, which are of one destination, can be read on this computer: in its
    /// place, or a new copy of the size that it should have, named `prefix` and its position, in
    /// `staging`, which exists, where it grows. In their order.
    virtual std::vector<Result<PlacedFile>> fetch(std::span<const File> files, const Url& staging,
                                                  const std::string& prefix) = 0;

    /// Whether the card's file and the destination's, both on this computer and of `size` bytes
    /// when they were listed, are equal, as the media hold them and no cache. Fails where one
    /// cannot be read or has another size by now, or when stopped.
    virtual Result<bool> haveSameContent(const PlacedFile& card, const PlacedFile& destination,
                                         std::int64_t size, const Step& step) = 0;
};

}  // namespace bildkurier
