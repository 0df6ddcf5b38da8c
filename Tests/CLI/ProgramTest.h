// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "LoggedCall.h"
#include "ProgramCall.h"
#include "ProgramResult.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {

using Strings = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

/// Runs the real command line over a card and a destination of its own.
class ProgramTest : public testing::Test {
protected:
    /// Skips the test where the library that makes a file system fail cannot be preloaded.
    static void needFaults();

    /// Puts a file on the card, taken at noon of 1 July 2024 or that many minutes later.
    void add(const std::string& name, std::string_view contents, int minute = 0) const;
    /// The same with `size` bytes that are others for every name.
    void addLarge(const std::string& name, std::size_t size, int minute = 0) const;
    /// The same with few bytes and a hole after them, which takes no room here.
    void addHollow(const std::string& name, std::size_t size, int minute = 0) const;

    /// bildkurier-cli as a user runs it whose settings and locks are in `user`.
    static ProgramCall call(const Strings& arguments, const Environment& environment,
                            const TemporaryFolder& user);
    /// Runs it for a user of its own.
    static ProgramResult run(const Strings& arguments, const Environment& environment = {});

    /// Imports `card` into `destination`; `options` besides.
    ProgramResult import(const Strings& options = {}, const Environment& environment = {}) const;

    /// The environment in which calls below `root` count, and are logged.
    static Environment watching(const std::string& root, const std::string& log);
    /// The calls below `destination` that an import makes.
    std::vector<LoggedCall> callsOfImport() const;

    /// Where a file on the card is.
    std::string picture(const std::string& name) const;

    const TemporaryFolder folder;
    std::string card = folder.makeFolder("card");
    std::string destination = folder.path("destination");
};

/// The files in a tree by their own names alone, hidden ones left out. Fails the test where two
/// have the same.
Tree visibleFiles(const Tree& tree);

/// Whether anything is in the tree whose own name or folder is hidden.
bool hasHidden(const Tree& tree);

}  // namespace bildkurier
