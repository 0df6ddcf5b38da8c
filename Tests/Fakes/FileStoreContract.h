// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileStore.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace bildkurier {

/// A store with the surroundings that a test of it needs, new for every test.
class FileStoreStand {
public:
    virtual ~FileStoreStand() = default;

    virtual FileStore& store() = 0;
    /// What reaches the staging folder: the store itself, or the local one where a server's
    /// files are staged on this computer.
    virtual FileStore& stagingStore() { return store(); }
    /// An empty folder into which this process may write.
    virtual Url destination() = 0;
    /// Writes a file as a download does, into a folder that exists.
    virtual void write(const Url& file, const std::string& contents) = 0;
    /// The contents of a file; absent when there is none.
    virtual std::optional<std::string> contents(const Url& file) = 0;
};

struct FileStoreMaker {
    std::string name;  ///< letters only
    /// Answers none where this computer lacks what the store takes: the tests skip.
    std::function<std::unique_ptr<FileStoreStand>()> make;
};

/// What every file store must do. Each store's tests name it once more:
///
///     INSTANTIATE_TEST_SUITE_P(Local, FileStoreContract, testing::Values(...), storeName);
class FileStoreContract : public testing::TestWithParam<FileStoreMaker> {
protected:
    void SetUp() override;

    FileStore& store() { return stand_->store(); }
    FileStore& stagingStore() { return stand_->stagingStore(); }
    Url destination() { return stand_->destination(); }
    Url at(std::string_view relative) { return destination().appending(relative); }
    std::optional<std::string> contents(const Url& file) { return stand_->contents(file); }

    /// Puts a file where only the store's neighbours can put it.
    void write(const Url& file, const std::string& contents) { stand_->write(file, contents); }
    void makeFolder(const Url& folder);
    /// Writes a file into the staging folder.
    Url stage(const std::string& contents);
    /// Brings a file to its place as an import does, into a folder that need not exist.
    void bring(std::string_view relative, const std::string& contents);

private:
    std::unique_ptr<FileStoreStand> stand_ = GetParam().make();
};

/// What every file store must do that has its folders at hand: any but a server's, which may let
/// a file be replaced, removes no more than one thing a call, and takes no line breaks.
class StrictFileStoreContract : public FileStoreContract {};

std::string storeName(const testing::TestParamInfo<FileStoreMaker>& info);

}  // namespace bildkurier
