// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "OpenBelow.h"
#include "TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

namespace bildkurier {
namespace {

class OpenBelowTest : public testing::Test {
protected:
    TemporaryFolder folder;
    FileDescriptor root{::open(folder.path().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC)};

    std::string contents(std::string_view path) {
        const FileDescriptor file = openBelow(root, path, O_RDONLY);
        if (!file) return "";
        char text[16];
        const auto length = ::read(file.get(), text, sizeof text);
        return length < 0 ? "" : std::string(text, static_cast<std::size_t>(length));
    }

    int errorOf(std::string_view path, int flags = O_RDONLY) {
        errno = 0;
        return openBelow(root, path, flags) ? 0 : errno;
    }
};

TEST_F(OpenBelowTest, OpensAtAnyDepth) {
    folder.write("a.txt", "a");
    folder.write("b/c/d/e.txt", "e");
    EXPECT_EQ(contents("a.txt"), "a");
    EXPECT_EQ(contents("b/c/d/e.txt"), "e");
    EXPECT_EQ(errorOf("b/c", O_RDONLY | O_DIRECTORY), 0);
}

TEST_F(OpenBelowTest, OpensTheRootItself) { EXPECT_EQ(errorOf("", O_RDONLY | O_DIRECTORY), 0); }

TEST_F(OpenBelowTest, SaysWhyItCannot) {
    folder.write("a.txt", "a");
    EXPECT_EQ(errorOf("b.txt"), ENOENT);
    EXPECT_EQ(errorOf("b/c.txt"), ENOENT);
    EXPECT_EQ(errorOf("a.txt/b"), ENOTDIR);
    EXPECT_EQ(errorOf("a.txt", O_RDONLY | O_DIRECTORY), ENOTDIR);
}

TEST_F(OpenBelowTest, FollowsNoLink) {
    namespace fs = std::filesystem;
    folder.write("real/a.txt", "a");
    fs::create_symlink("real/a.txt", folder.path("link.txt"));
    fs::create_directory_symlink("real", folder.path("link"));
    fs::create_directory_symlink(folder.path("real"), folder.path("real/loop"));
    EXPECT_EQ(errorOf("link.txt"), ELOOP);
    EXPECT_EQ(errorOf("link/a.txt"), ENOTDIR);
    EXPECT_EQ(errorOf("real/loop/a.txt"), ENOTDIR);
    EXPECT_EQ(errorOf("link", O_RDONLY | O_DIRECTORY), ENOTDIR);
    EXPECT_EQ(contents("real/a.txt"), "a");
}

}  // namespace
}  // namespace bildkurier
