// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "PassingFileStore.h"

namespace bildkurier {

/// Passes everything on to another store and remembers the last scan.
class ScanMemory final : public PassingFileStore {
public:
    using PassingFileStore::PassingFileStore;

    int scans = 0;
    Url folder;  ///< that was scanned last
    FileKeys keys;

    FileKeys existingFileKeys(const Url& of) override {
        ++scans;
        folder = of;
        return keys = PassingFileStore::existingFileKeys(of);
    }
};

}  // namespace bildkurier
