// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "PassingFileStore.h"

#include <optional>
#include <string>

namespace bildkurier {

/// Passes everything on to another store and remembers the last scan.
class ScanMemory final : public PassingFileStore {
public:
    using PassingFileStore::PassingFileStore;

    int scans = 0;
    Url folder;  ///< that was scanned last
    FileKeys keys;
    std::optional<std::string> trouble;

    FileListing listing(const Url& of) override {
        ++scans;
        folder = of;
        auto found = PassingFileStore::listing(of);
        keys = found.keys;
        trouble = found.trouble;
        return found;
    }
};

}  // namespace bildkurier
