// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ContentReader.h"
#include "SFTPFileStore.h"

#include <memory>

namespace bildkurier {

/// Reads local folders where they are, and what servers hold by downloading it with `server`.
class DestinationReader final : public ContentReader {
public:
    explicit DestinationReader(std::shared_ptr<SFTPFileStore> server);

    Result<Listing> files(const Url& folder) override;
    std::vector<std::string> cautions(const Url& folder, const std::optional<Url>& card) override;
    std::vector<Result<PlacedFile>> fetch(std::span<const File> files, const Url& staging,
                                          const std::string& prefix) override;
    Result<bool> haveSameContent(const PlacedFile& one, const PlacedFile& other, std::int64_t size,
                                 const Step& step) override;

private:
    std::shared_ptr<SFTPFileStore> server_;
};

}  // namespace bildkurier
