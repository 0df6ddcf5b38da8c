// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpKeyWalk.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace bildkurier {
namespace {

std::string file(const std::string& path) {
    return "-rw-r--r-- 1 0 0 5 May 9 10:00 " + path + "\n";
}
std::string directory(const std::string& path) {
    return "drwxr-xr-x 1 0 0 0 May 9 10:00 " + path + "\n";
}

TEST(SftpKeyWalk, KnowsTheFolderByTheEcho) {
    SftpKeyWalk walk("/p");
    walk.read(file("/p/early") + "sftp> -ls -ln \"/p\"\n" + file("/p/here") +
              "sftp> -ls -ln \"/other\"\n" + file("/p/unknown") +
              "sftp> -ls -ln \"/p\"\nnonsense\n" + file("/p/again"));
    EXPECT_EQ(walk.keys(), (FileKeys{"here|5", "again|5"}));
}

TEST(SftpKeyWalk, GoesOnWithTheFoldersOfALevel) {
    SftpKeyWalk walk("/p");
    EXPECT_EQ(walk.commands(), SftpCommands{"-ls -ln \"/p\""});
    walk.read("sftp> -ls -ln \"/p\"\n" + directory("/p/a \"b\"") + directory("/p/c"));
    EXPECT_TRUE(walk.goesOn());
    EXPECT_EQ(walk.commands(), (SftpCommands{"-ls -ln \"/p/a \\\"b\\\"\"", "-ls -ln \"/p/c\""}));
    walk.read("sftp> -ls -ln \"/p/a \\\"b\\\"\"\n" + file("/p/a \"b\"/x"));
    EXPECT_FALSE(walk.goesOn());
    EXPECT_EQ(walk.keys(), FileKeys{"x|5"});
}

TEST(SftpKeyWalk, TrustsNoListing) {
    SftpKeyWalk walk("/p");
    const std::string longName(256, 'n');
    walk.read("sftp> -ls -ln \"/p\"\n" + directory("/p/..") + directory("/p/.") + directory("/p") +
              directory("/p/.hidden") + directory("/p/a/b") + directory("/elsewhere") +
              directory("/p/bell\a") + directory("/p/" + longName) + file("/p/../x") +
              file("/p/.hidden") + file("/etc/x") + file("forged") + file("/p/return\r") +
              file("/p/" + longName) + file("/p/good"));
    EXPECT_FALSE(walk.goesOn());
    EXPECT_EQ(walk.keys(), FileKeys{"good|5"});
}

TEST(SftpKeyWalk, TakesAFileForNoFolder) {
    SftpKeyWalk walk("/p/x.jpg");
    walk.read("sftp> -ls -ln \"/p/x.jpg\"\n" + file("/p/x.jpg"));
    EXPECT_EQ(walk.keys(), FileKeys{});
}

TEST(SftpKeyWalk, GoesIntoNoFolderWhosePathIsTooLong) {
    SftpKeyWalk walk("/" + std::string(2000, 'p'));
    walk.read("sftp> " + walk.commands().front() + "\n" +
              directory("/" + std::string(2000, 'p') + "/" + std::string(40, 'd')) +
              directory("/" + std::string(2000, 'p') + "/d"));
    EXPECT_EQ(walk.commands().size(), 1U);
    EXPECT_TRUE(walk.commands().front().ends_with("p/d\""));
}

TEST(SftpKeyWalk, KnowsTheFoldersThatCannotBeListed) {
    using Unlisted = std::map<std::string, std::string>;
    SftpKeyWalk walk("/p");
    walk.read("sftp> -ls -ln \"/p\"\n" + directory("/p/a") + directory("/p/b") + directory("/p/c") +
              directory("/p/d"));
    EXPECT_EQ(walk.unlisted(), Unlisted{});
    const std::string denied = "remote readdir(\"/p/a/\"): Permission denied\r";
    const std::string failed = "Couldn't read directory: Failure";
    walk.read("sftp> -ls -ln \"/p/a\"\n" + denied + "\nsftp> -ls -ln \"/p/b\"\n" + file("/p/b/x") +
              failed + "\nsftp> -ls -ln \"/p/c\"\nCan't ls: \"/p/c\" not found\n" +
              "sftp> -ls -ln \"/p/d\"\n" + directory("/p/d/e"));
    EXPECT_EQ(walk.keys(), FileKeys{"x|5"});
    EXPECT_EQ(walk.unlisted(), (Unlisted{{"/p/a", denied}, {"/p/b", failed}}));
    EXPECT_EQ(walk.commands(), SftpCommands{"-ls -ln \"/p/d/e\""});
}

TEST(SftpKeyWalk, KnowsTheFoldersWhoseCommandsWereNotEchoed) {
    using Unlisted = std::map<std::string, std::string>;
    for (const std::string answer :
         {"", "welcome sftp> -ls -ln \"/p\"\n", "sftp> -ls -ln \"/q\"\n"}) {
        SftpKeyWalk walk("/p");
        walk.read(answer + file("/p/x"));
        EXPECT_EQ(walk.keys(), FileKeys{});
        EXPECT_EQ(walk.unlisted(), (Unlisted{{"/p", ""}})) << answer;
    }
    SftpKeyWalk walk("/p");
    walk.read("sftp> -ls -ln \"/p\"\n" + directory("/p/a") + directory("/p/b"));
    walk.read("sftp> -ls -ln \"/p/a\"\n" + file("/p/a/x") + "welcome sftp> -ls -ln \"/p/b\"\n" +
              file("/p/b/y"));
    EXPECT_EQ(walk.keys(), FileKeys{"x|5"});
    EXPECT_EQ(walk.unlisted(), (Unlisted{{"/p/b", ""}}));
}

TEST(SftpKeyWalk, ReadsTheRootAndFoldersWithASlashAtTheEnd) {
    for (const std::string root : {"/", "/p/"}) {
        SftpKeyWalk walk(root);
        walk.read("sftp> -ls -ln \"" + root + "\"\n" + file(root + "x") + directory(root + "d"));
        EXPECT_EQ(walk.keys(), FileKeys{"x|5"});
        EXPECT_EQ(walk.commands(), SftpCommands{"-ls -ln \"" + root + "d\""});
    }
}

TEST(SftpKeyWalk, ReadsNamesThatTheClientCannotPrint) {
    SftpKeyWalk walk("/Ü");
    walk.read("sftp> -ls -ln \"/\\303\\234\"\n" + file("/\\303\\234/\\303\\204.JPG") +
              directory("/\\303\\234/\\377"));
    EXPECT_EQ(walk.keys(), (FileKeys{"ä.jpg|5", "\\303\\204.jpg|5"}));
    EXPECT_EQ(walk.commands(), (SftpCommands{"-ls -ln \"/Ü/\\\\377\"", "-ls -ln \"/Ü/\xFF\""}));
}

TEST(SftpKeyWalk, TakesNamesThatLookEscapedForThemselvesToo) {
    SftpKeyWalk walk("/p");
    walk.read("sftp> -ls -ln \"/p\"\n" + file("/p/\\303\\274.JPG") + directory("/p/\\303\\274") +
              directory("/p/ü"));
    EXPECT_EQ(walk.keys(), (FileKeys{"\\303\\274.jpg|5", "ü.jpg|5"}));
    EXPECT_EQ(walk.commands(), (SftpCommands{"-ls -ln \"/p/\\\\303\\\\274\"", "-ls -ln \"/p/ü\""}));
    walk.read("sftp> -ls -ln \"/p/\\\\303\\\\274\"\n" + file("/p/\\303\\274/x") +
              "sftp> -ls -ln \"/p/ü\"\n" + file("/p/ü/y"));
    EXPECT_TRUE(walk.keys().contains("x|5"));
    EXPECT_TRUE(walk.keys().contains("y|5"));
}

TEST(SftpKeyWalk, ReadsUmlautsBesideWhatLooksEscaped) {
    SftpKeyWalk walk("/ü\\303");
    walk.read("sftp> -ls -ln \"/\\303\\274\\\\303\"\n" + file("/\\303\\274\\303/x"));
    EXPECT_EQ(walk.keys(), FileKeys{"x|5"});
}

TEST(SftpKeyWalk, ReadsFoldersThatOnlyLookEscaped) {
    SftpKeyWalk walk("/a\\303");
    walk.read("sftp> -ls -ln \"/a\\\\303\"\n" + file("/a\\303/x"));
    EXPECT_EQ(walk.keys(), FileKeys{"x|5"});
}

}  // namespace
}  // namespace bildkurier
