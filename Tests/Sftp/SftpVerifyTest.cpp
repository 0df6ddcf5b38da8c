// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DestinationReader.h"
#include "OrdinaryUser.h"
#include "SftpServerTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

using File = ContentReader::File;

/// Reads what a real server holds.
class SftpVerifyTest : public SftpServerTest {
protected:
    void put(const std::string& path, const std::string& contents) const {
        const std::string where = server->path("fotos/" + path);
        fs::create_directories(fs::path(where).parent_path());
        std::ofstream(where, std::ios::binary) << contents;
    }

    std::vector<File> listed() const {
        auto found = reader().files(server->url("fotos"));
        EXPECT_TRUE(found) << found.error().message;
        return found ? found->files : std::vector<File>();
    }

    DestinationReader& reader() const { return *reader_; }
    Url staging() const { return Url::file(staging_); }

private:
    const std::string staging_ = local.makeFolder("staging");
    std::shared_ptr<DestinationReader> reader_ = std::make_shared<DestinationReader>(store);
};

TEST_F(SftpVerifyTest, NamesEachFolderThatIsNotListed) {
    put("A.JPG", "eins");
    put("JPG/zu/B.JPG", "zwei");
    put("JPG/C.JPG", "drei");
    const std::string closed = server->path("fotos/JPG/zu");
    server->handOver(closed);
    fs::permissions(closed, fs::perms::owner_write | fs::perms::owner_exec);
    const auto found = reader().files(server->url("fotos"));
    fs::permissions(closed, fs::perms::owner_all);
    ASSERT_TRUE(found) << found.error().message;
    EXPECT_EQ(found->unreadable, std::vector<std::string>{"JPG/zu"});
    EXPECT_EQ(found->files.size(), 2U);
}

TEST_F(SftpVerifyTest, DownloadsEachFileOfAListing) {
    const std::map<std::string, std::string> files{
        {"A.JPG", "eins"},
        {"2024-07-01/JPG/B.JPG", std::string(300'000, 'x')},
        {"JPG/leer.JPG", ""},
        {"JPG/mit Leerzeichen [1] *?.JPG", "zwei"},
        {"JPG/{a,b} 'x' \"y\" \\z.JPG", "drei"},
        {"JPG/Grüße.JPG", "vier"},
        {"JPG/-r.JPG", "fünf"},
        {"JPG/~.JPG", "sechs"}};
    for (const auto& [path, contents] : files) put(path, contents);
    put(".versteckt/C.JPG", "nein");
    const Tree before = serversTree();
    std::map<std::string, std::string> found;
    const auto listing = listed();
    const auto copies = reader().fetch(listing, staging(), "ziel-");
    ASSERT_EQ(copies.size(), listing.size());
    for (std::size_t n = 0; n < copies.size(); ++n) {
        if (!copies[n]) continue;  // another reading of a name
        EXPECT_EQ(copies[n]->folder, staging());
        EXPECT_EQ(copies[n]->path, "ziel-" + std::to_string(n));
        found[listing[n].place.path] = tree(staging().path).at(copies[n]->path);
    }
    EXPECT_EQ(found, files);
    EXPECT_EQ(serversTree(), before);
}

TEST_F(SftpVerifyTest, WritesNothingOutsideTheStagingFolder) {
    put("A.JPG", "eins");
    std::vector<File> wanted;
    for (const std::string path : {"x\n!touch geschrieben\n.JPG", "x\ry.JPG", "fehlt.JPG", "A.JPG"})
        wanted.push_back({.place = {.folder = server->url("fotos"), .path = path}, .size = 4});
    wanted.push_back({.place = {.folder = server->url("fotos"), .path = "A.JPG"}, .size = 5});
    const Tree before = serversTree();
    const auto copies = reader().fetch(wanted, staging(), "ziel-");
    EXPECT_EQ(copies[0].error().message, "Der Pfad enthält Zeilenumbrüche oder Steuerzeichen");
    EXPECT_EQ(copies[1].error().message, "Der Pfad enthält Zeilenumbrüche oder Steuerzeichen");
    EXPECT_EQ(copies[2].error().message, "am Ziel nicht vollständig lesbar");
    EXPECT_TRUE(copies[3]);
    EXPECT_EQ(copies[4].error().message, "am Ziel nicht vollständig lesbar");
    EXPECT_EQ(tree(local.path()), (Tree{{"staging/", ""}, {"staging/ziel-3", "eins"}}));
    EXPECT_EQ(serversTree(), before);
}

TEST_F(SftpVerifyTest, TakesNoOlderCopyForANewOne) {
    put("A.JPG", "eins");
    put("zu.JPG", "zwei");
    server->handOver(server->path("fotos/zu.JPG"));
    fs::permissions(server->path("fotos/zu.JPG"), fs::perms::none);
    const auto listing = listed();
    ASSERT_EQ(listing.size(), 2U);
    for (const char* copy : {"staging/ziel-0", "staging/ziel-1"}) local.write(copy, "alt!");
    const auto copies = reader().fetch(listing, staging(), "ziel-");
    for (std::size_t n = 0; n < copies.size(); ++n) {
        const std::string name = "ziel-" + std::to_string(n);
        const auto there = tree(staging().path);
        if (listing[n].place.path == "A.JPG") {
            EXPECT_EQ(there.at(name), "eins");
        } else {
            EXPECT_FALSE(copies[n]);
            EXPECT_FALSE(there.contains(name));
        }
    }
}

TEST_F(SftpVerifyTest, FetchesNothingToWhereSomethingStays) {
    put("A.JPG", "eins");
    const auto listing = listed();
    ASSERT_EQ(listing.size(), 1U);
    local.write("staging/ziel-0", "alt!");
    fs::permissions(local.path(), fs::perms::all);
    fs::permissions(staging().path, fs::perms::owner_all | fs::perms::others_exec);
    runAsOrdinaryUser([&] {
        const auto copies = reader().fetch(listing, staging(), "ziel-");
        ASSERT_FALSE(copies.at(0));
        EXPECT_EQ(copies[0].error().message, "der Platz für eine Kopie ist nicht frei");
    });
}

TEST_F(SftpVerifyTest, FailsWhereTheServerDoesNotAnswer) {
    put("A.JPG", "eins");
    auto listing = listed();
    ASSERT_EQ(listing.size(), 1U);
    listing.front().place.folder.port = 1;
    EXPECT_FALSE(reader().files(listing.front().place.folder));
    const auto copies = reader().fetch(listing, staging(), "ziel-");
    ASSERT_FALSE(copies.at(0));
    EXPECT_TRUE(copies[0].error().message.starts_with("am Ziel nicht vollständig lesbar"));
}

}  // namespace
}  // namespace bildkurier
