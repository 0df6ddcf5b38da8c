// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileStoreContract.h"
#include "LocalFileStore.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace bildkurier {

namespace {

class LocalStand final : public FileStoreStand {
public:
    FileStore& store() override { return store_; }
    Url destination() override { return folder_.url(); }
    void write(const Url& file, const std::string& contents) override {
        std::ofstream stream(file.path, std::ios::binary);
        stream.exceptions(std::ios::badbit | std::ios::failbit);
        stream << contents << std::flush;
    }
    std::optional<std::string> contents(const Url& file) override {
        std::ifstream stream(file.path, std::ios::binary);
        if (!stream) return {};
        return std::string(std::istreambuf_iterator<char>(stream), {});
    }

private:
    TemporaryFolder folder_;
    LocalFileStore store_;
};

const FileStoreMaker maker{"Local", [] { return std::make_unique<LocalStand>(); }};

INSTANTIATE_TEST_SUITE_P(Disk, FileStoreContract, testing::Values(maker), storeName);
INSTANTIATE_TEST_SUITE_P(Disk, StrictFileStoreContract, testing::Values(maker), storeName);

}  // namespace

}  // namespace bildkurier
