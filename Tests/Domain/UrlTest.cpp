// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Url.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

Url at(std::string path) { return Url::file(std::move(path)); }

TEST(Url, OfAFileHasAPathAndNothingElse) {
    const Url url = Url::file("/home/anna/Bilder");
    EXPECT_EQ(url.scheme, "file");
    EXPECT_EQ(url.path, "/home/anna/Bilder");
    EXPECT_EQ(url.user, "");
    EXPECT_EQ(url.host, "");
    EXPECT_EQ(url.port, std::nullopt);
    EXPECT_TRUE(url.isFile());
}

TEST(Url, OfAServerIsNoFile) {
    const Url url{.scheme = "sftp", .user = "anna", .host = "nas", .port = 22, .path = "/b"};
    EXPECT_FALSE(url.isFile());
}

TEST(Url, PutsExactlyOneSlashInFrontOfAnAppendedComponent) {
    const struct {
        std::string path;
        std::string component;
        std::string deeper;
    } cases[] = {
        {"/Bilder", "A.JPG", "/Bilder/A.JPG"},
        {"/Bilder/", "A.JPG", "/Bilder/A.JPG"},
        {"/Bilder//", "A.JPG", "/Bilder/A.JPG"},
        {"/", "A.JPG", "/A.JPG"},
        {"", "A.JPG", "/A.JPG"},
        {"Bilder", "A.JPG", "Bilder/A.JPG"},
    };
    for (const auto& [path, component, deeper] : cases) {
        EXPECT_EQ(at(path).appending(component).path, deeper) << path;
    }
}

TEST(Url, KeepsTheServerWhenAComponentIsAppended) {
    const Url url{.scheme = "sftp", .user = "anna", .host = "nas", .port = 2222, .path = "/b"};
    Url deeper = url;
    deeper.path = "/b/2024-05-09";
    EXPECT_EQ(url.appending("2024-05-09"), deeper);
}

TEST(Url, NormalisesNothing) {
    EXPECT_EQ(at("/a//b/../c").appending("%20 \xFF").path, "/a//b/../c/%20 \xFF");
    EXPECT_EQ(at("/a//b/..").lastComponent(), "..");
}

TEST(Url, NamesItsLastComponent) {
    const struct {
        std::string path;
        std::string last;
    } cases[] = {
        {"/Bilder/2024-05-09", "2024-05-09"},
        {"/Bilder/", "Bilder"},
        {"/Bilder//", "Bilder"},
        {"Bilder", "Bilder"},
        {"/", "/"},
        {"//", "/"},
        {"", ""},
        {"/a/\xC4rger", "\xC4rger"},
    };
    for (const auto& [path, last] : cases) EXPECT_EQ(at(path).lastComponent(), last) << path;
}

TEST(Url, EqualsOneWithTheSameParts) {
    const Url url{.scheme = "sftp", .user = "anna", .host = "nas", .port = 22, .path = "/b"};
    Url other = url;
    EXPECT_EQ(url, other);
    other.port = std::nullopt;
    EXPECT_NE(url, other);
}

}  // namespace
}  // namespace bildkurier
