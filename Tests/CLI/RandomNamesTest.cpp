// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileName.h"
#include "FolderLayout.h"
#include "ImportRunner.h"
#include "LocalFileStore.h"
#include "ManualRunLoop.h"
#include "PartialFile.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

/// A camera file with any name, whose contents are its name.
class NamedFile final : public CameraFile {
public:
    explicit NamedFile(std::string name) : name_(std::move(name)) {}

    std::optional<std::string> name() const override { return name_; }
    std::int64_t size() const override { return std::ssize(name_); }
    std::optional<Date> shotDate() const override { return std::nullopt; }
    void download(const Url& folder, const std::string& name, DownloadCompletion done) override {
        PartialFile copy;
        auto saved = copy.create(folder.path, name, true);
        if (saved) saved = copy.append(name_);
        if (saved) saved = copy.complete({});
        if (!saved) return done(std::unexpected(saved.error()));
        done(std::nullopt);
    }

private:
    std::string name_;
};

/// A file system in memory where there is one: ten thousand flushes take long on a disk.
std::string quickFolder() {
    const std::string memory = "/dev/shm";
    return std::filesystem::is_directory(memory) ? memory
                                                 : std::filesystem::temp_directory_path().string();
}

class RandomNames {
public:
    explicit RandomNames(std::uint64_t seed) : random_(seed) {}

    std::string next() {
        std::string name;
        for (std::size_t piece = below(6); piece > 0; --piece)
            name += pieces_[below(pieces_.size())];
        for (std::size_t bytes = below(8); bytes > 0; --bytes)
            name += static_cast<char>(below(256));
        return name;
    }

private:
    std::size_t below(std::size_t end) {
        return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
    }

    std::vector<std::string> pieces_ = {"..",
                                        ".",
                                        "/",
                                        "../",
                                        "/../",
                                        "\\",
                                        "IMG_1",
                                        ".JPG",
                                        ".",
                                        "~",
                                        "$HOME",
                                        "\n",
                                        "\xFF",
                                        "ü",
                                        "İ",
                                        "-rf",
                                        std::string(90, 'x'),
                                        "CON",
                                        ":",
                                        "*",
                                        "%2e%2e/",
                                        "\u202E",
                                        " ",
                                        std::string(1, '\0'),
                                        ".bildkurier-tmp"};
    std::mt19937_64 random_;
};

TEST(RandomNames, NeverLeaveTheDestination) {
    constexpr std::int64_t count = 10'000;
    const std::uint64_t seed = std::random_device()();
    RecordProperty("seed", std::to_string(seed));
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomNames names(seed);
    std::vector<std::shared_ptr<CameraFile>> files;
    std::int64_t plain = 0;
    std::set<std::string> seen;
    while (std::ssize(files) < count) {
        const std::string name = names.next();
        if (!seen.insert(name).second) continue;  // as no plan has a file twice
        files.push_back(std::make_shared<NamedFile>(name));
        if (isPlainFileName(name) && isPlainFileName(typeFolder(name))) ++plain;
    }
    const TemporaryFolder folder(quickFolder());
    folder.write("outside/IMG_1.JPG", "untouched");
    const Tree before = tree(folder.path());

    ManualRunLoop loop;
    ImportRunner runner(std::make_shared<LocalFileStore>(), loop, loop);
    ImportRunner::Progress end;
    runner.onFinish = [&end](const ImportRunner::Progress& progress, bool) { end = progress; };
    ASSERT_TRUE(
        runner.start(files, folder.url("outside/bilder"), {.byDate = true, .byType = true}));
    loop.settle();

    EXPECT_EQ(end.done + end.failed, count);
    EXPECT_EQ(end.done, plain);
    EXPECT_GT(plain, count / 10);
    EXPECT_LT(plain, count);
    Tree after = tree(folder.path("outside/bilder"));
    EXPECT_EQ(
        std::ranges::count_if(after, [](const auto& item) { return !item.first.ends_with('/'); }),
        end.done);
    std::filesystem::remove_all(folder.path("outside/bilder"));
    EXPECT_EQ(tree(folder.path()), before);
}

}  // namespace
}  // namespace bildkurier
