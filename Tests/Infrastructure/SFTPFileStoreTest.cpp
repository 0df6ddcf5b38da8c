// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "HostKeyMismatch.h"
#include "SFTPFileStore.h"
#include "ScriptedCommandRunner.h"
#include "TemporaryFolder.h"
#include "Tree.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

Url server(std::string path) {
    return {.scheme = "sftp", .user = "anna", .host = "nas", .path = std::move(path)};
}

class SFTPFileStoreTest : public testing::Test {
protected:
    /// The scripts that the client was given.
    std::vector<std::string> scripts() const {
        std::vector<std::string> all;
        for (const auto& call : runner->calls) all.push_back(call.input.value_or("none"));
        return all;
    }
    /// Answers one run after the other.
    void answer(std::vector<CommandResult> results) {
        runner->answer = [this, results = std::move(results)](const auto&) {
            return results.at(runner->calls.size() - 1);
        };
    }

    TemporaryFolder folder;
    std::shared_ptr<ScriptedCommandRunner> runner = std::make_shared<ScriptedCommandRunner>();
    SSHLogin login = SSHLogin::userSSH();
    SFTPFileStore store{runner, "/usr/bin/sftp", [this] { return login; }, folder.url("root")};
};

const auto appKey = SSHLogin::appKey(Url::file("/data/App Support/schluessel"),
                                     Url::file("/data/App Support/known_hosts"));

TEST(SFTPArguments, UseTheAppsKeyAlone) {
    EXPECT_EQ(
        SFTPFileStore::arguments("nas", {}, appKey),
        (std::vector<std::string>{"-b", "-",
                                  "-o", "LogLevel=ERROR",
                                  "-F", "/dev/null",
                                  "-i", "/data/App Support/schluessel",
                                  "-o", "IdentitiesOnly=yes",
                                  "-o", "IdentityAgent=none",
                                  "-o", "PasswordAuthentication=no",
                                  "-o", "KbdInteractiveAuthentication=no",
                                  "-o", "UserKnownHostsFile=\"/data/App Support/known_hosts\"",
                                  "-o", "GlobalKnownHostsFile=/dev/null",
                                  "-o", "StrictHostKeyChecking=accept-new",
                                  "-o", "BatchMode=yes",
                                  "-o", "ConnectTimeout=10",
                                  "nas"}));
}

TEST(SFTPArguments, LeaveTheUsersSetupAlone) {
    const std::vector<std::string> expected{
        "-q", "-b", "-", "-o", "BatchMode=yes", "-o", "ConnectTimeout=10", "-P", "2222", "nas"};
    EXPECT_EQ(SFTPFileStore::arguments("nas", 2222, SSHLogin::userSSH()), expected);
    EXPECT_EQ(SFTPFileStore::arguments("nas", 2222, SSHLogin::missingKey()), expected);
}

TEST(SFTPArguments, NameThePortOfTheUrlOnly) {
    for (const auto& login : {appKey, SSHLogin::userSSH()}) {
        const auto without = SFTPFileStore::arguments("anna@nas", {}, login);
        EXPECT_EQ(std::ranges::find(without, "-P"), without.end());
        auto expected = without;
        expected.insert(expected.end() - 1, {"-P", "22"});
        EXPECT_EQ(SFTPFileStore::arguments("anna@nas", 22, login), expected);
    }
}

TEST(SSHLogin, IsComparedByValue) {
    EXPECT_EQ(appKey, SSHLogin::appKey(appKey.keyFile, appKey.knownHosts));
    EXPECT_NE(appKey, SSHLogin::appKey(appKey.keyFile, Url::file("/other")));
    EXPECT_NE(appKey, SSHLogin::appKey(Url::file("/other"), appKey.knownHosts));
    EXPECT_NE(SSHLogin::userSSH(), SSHLogin::missingKey());
    EXPECT_EQ(SSHLogin::userSSH(), SSHLogin::userSSH());
}

TEST(SFTPAccount, IsUserAndHost) {
    EXPECT_EQ(SFTPFileStore::account({.user = "anna", .host = "nas"}), "anna@nas");
    EXPECT_EQ(SFTPFileStore::account({.host = "nas"}), "nas");
    EXPECT_EQ(SFTPFileStore::account({.user = "anna"}), std::nullopt);
    EXPECT_EQ(SFTPFileStore::account(Url::file("/tmp")), std::nullopt);
}

TEST(SFTPQuoted, EscapesWhatQuotesDoNot) {
    const struct {
        std::string path;
        std::string quoted;
    } cases[] = {
        {"", "\"\""},           {"a b  c.jpg", "\"a b  c.jpg\""},
        {"a\"b", "\"a\\\"b\""}, {"a\\b", "\"a\\\\b\""},
        {"*?[x]", "\"*?[x]\""}, {"Übung 'x' #1", "\"Übung 'x' #1\""},
    };
    for (const auto& [path, quoted] : cases) EXPECT_EQ(SFTPFileStore::quoted(path), quoted);
}

TEST(SFTPQuoted, EscapesBracesForListingsOnly) {
    EXPECT_EQ(SFTPFileStore::quoted("{a,b}"), "\"{a,b}\"");
    EXPECT_EQ(SFTPFileStore::quotedForListing("{a,b}"), "\"\\{a,b\\}\"");
    EXPECT_EQ(SFTPFileStore::quotedForListing("a\"\\*[x] b"), SFTPFileStore::quoted("a\"\\*[x] b"));
}

TEST(SFTPMakeDirectories, MakesEveryPrefix) {
    using Commands = std::vector<std::string>;
    EXPECT_EQ(SFTPFileStore::makeDirectories("/photos/2024"),
              (Commands{"-mkdir \"/photos\"", "-mkdir \"/photos/2024\""}));
    EXPECT_EQ(SFTPFileStore::makeDirectories("//a b///c/"),
              (Commands{"-mkdir \"/a b\"", "-mkdir \"/a b/c\""}));
    EXPECT_EQ(SFTPFileStore::makeDirectories("photos"), Commands{"-mkdir \"/photos\""});
    EXPECT_EQ(SFTPFileStore::makeDirectories("/"), Commands{});
    EXPECT_EQ(SFTPFileStore::makeDirectories(""), Commands{});
}

TEST(SFTPEntries, AreTheLinesThatList) {
    const auto listing =
        "sftp> ls -ln \"/a\"\n"
        "drwxr-xr-x    ? 1000     1000         4096 May  9  2024 /a/b\n"
        "\n"
        "-rw-r--r--    1 1000     1000           12 May  9 10:00 /a/two  blanks .jpg\n"
        "lrwxrwxrwx    1 1000     1000            4 May  9 10:00 link\n"
        "Can't ls: \"/c\" not found\n";
    EXPECT_EQ(SFTPFileStore::entries(listing),
              (std::vector<SFTPFileStore::Entry>{
                  {true, 4096, "b"}, {false, 12, "two  blanks .jpg"}, {false, 4, "link"}}));
    EXPECT_EQ(SFTPFileStore::entries(""), std::vector<SFTPFileStore::Entry>{});
}

TEST(SFTPMessage, IsTheLastMeaningfulLine) {
    const struct {
        std::string output;
        std::string message;
    } cases[] = {
        {"sftp> put\nremote open(\"/x\"): Permission denied\nConnection closed",
         "remote open(\"/x\"): Permission denied"},
        {"first\n\nsecond\n\n", "second"},
        {"sftp> cd \"/a\"", "sftp> cd \"/a\""},
        {"sftp> a\nConnection closed", "sftp> a\nConnection closed"},
        {"", ""},
        {"@@@@@@\r\nHost key verification failed.\r\nConnection closed.\r\n\r\n",
         "Host key verification failed."},
    };
    for (const auto& [output, message] : cases)
        EXPECT_EQ(SFTPFileStore::message(output), message) << output;
}

TEST_F(SFTPFileStoreTest, TellsTheClientWhoAndWhat) {
    Url url = server("/photos");
    url.port = 2222;
    store.fileExists(url);
    EXPECT_EQ(
        runner->calls,
        (std::vector<ScriptedCommandRunner::Call>{{"/usr/bin/sftp",
                                                   {"-q", "-b", "-", "-o", "BatchMode=yes", "-o",
                                                    "ConnectTimeout=10", "-P", "2222", "anna@nas"},
                                                   "ls -ln \"/photos\"\n"}}));
}

TEST_F(SFTPFileStoreTest, AsksForTheLoginBeforeEveryRun) {
    store.fileExists(server("/a"));
    login = appKey;
    store.fileExists(server("/a"));
    EXPECT_EQ(runner->calls.at(0).arguments,
              SFTPFileStore::arguments("anna@nas", {}, SSHLogin::userSSH()));
    EXPECT_EQ(runner->calls.at(1).arguments, SFTPFileStore::arguments("anna@nas", {}, appKey));
}

TEST_F(SFTPFileStoreTest, StagesInOneFolderOfThisComputer) {
    EXPECT_EQ(store.stagingDirectory(server("/a")), folder.url("root/staging"));
    EXPECT_EQ(store.stagingDirectory(server("/b")), folder.url("root/staging"));
    EXPECT_FALSE(fs::exists(folder.path("root")));
}

TEST_F(SFTPFileStoreTest, IsNeverANetworkVolume) {
    EXPECT_FALSE(store.isNetworkVolume(server("/a")));
    EXPECT_EQ(runner->calls.size(), 0U);
}

TEST_F(SFTPFileStoreTest, TakesASuccessfulListingForExistence) {
    answer({{0, ""}, {1, "Can't ls: \"/a\" not found"}, {-1, "no client"}, {255, ""}});
    EXPECT_TRUE(store.fileExists(server("/a")));
    for (int n = 0; n < 3; ++n) EXPECT_FALSE(store.fileExists(server("/a")));
}

TEST_F(SFTPFileStoreTest, ReplacesNothingThatItCouldNotSeeBefore) {
    const auto local = folder.write("staged", "picture");
    const std::string failed = "Übertragung fehlgeschlagen: ";
    const struct {
        CommandResult firstLook;
        CommandResult secondLook;
        std::string message;
    } cases[] = {
        {{255, "ssh: connect to host nas port 22: Connection refused\r\nConnection closed"},
         {0, "-rw-r--r-- 1 0 0 9 May  9 10:00 /p/not found"},
         failed + "Eine Datei dieses Namens ist schon da"},
        {{-1, "no client"},
         {255, "Broken pipe"},
         failed + "Die Verbindung ist abgebrochen (Broken pipe)"},
        {{1, "sftp> ls -ln \"/p/not found\"\nremote readdir: Failure"},
         {255, "sftp> ls -ln \"/p/not found\"\nConnection reset"},
         failed + "Die Verbindung ist abgebrochen (Connection reset)"},
    };
    for (const auto& [firstLook, secondLook, message] : cases) {
        runner->calls.clear();
        answer({firstLook, secondLook});
        EXPECT_FALSE(store.fileExists(server("/p/not found")));
        EXPECT_EQ(store.moveItem(Url::file(local), server("/p/not found")).error().message,
                  message);
        EXPECT_EQ(scripts(), std::vector<std::string>(2, "ls -ln \"/p/not found\"\n"));
        EXPECT_TRUE(fs::exists(local));
    }
}

TEST_F(SFTPFileStoreTest, AsksUntilTheServerHasSaidThatNothingIsThere) {
    const CommandResult nothing{1, "sftp> ls\nCan't ls: \"/p/A\" not found"};
    const CommandResult arrived{0, "-rw-r--r-- 1 0 0 7 May  9 10:00 /p/A"};
    for (const int questions : {1, 2}) {
        const auto local = folder.write("staged", "picture");
        runner->calls.clear();
        answer({{255, "Connection closed"}, nothing, {0, ""}, arrived});
        for (int n = 0; n < questions; ++n) EXPECT_FALSE(store.fileExists(server("/p/A")));
        EXPECT_TRUE(store.moveItem(Url::file(local), server("/p/A")));
        EXPECT_EQ(runner->calls.size(), 4U);
    }
}

TEST_F(SFTPFileStoreTest, ReadsASizeFromTheListing) {
    const struct {
        CommandResult result;
        std::optional<std::int64_t> size;
    } cases[] = {
        {{0, "-rw-r--r-- 1 0 0 12 May  9 10:00 /a/x.jpg"}, 12},
        {{0, "-rw-r--r-- 1 0 0 12 May  9 10:00 x.jpg"}, 12},
        {{0,
          "-rw-r--r-- 1 0 0 7 May  9 10:00 /a/X.JPG\n-rw-r--r-- 1 0 0 8 May  9 10:00 /a/x.jpg\n"
          "-rw-r--r-- 1 0 0 9 May  9 10:00 /a/x.jpg"},
         8},
        {{0, "drwxr-xr-x 1 0 0 12 May  9 10:00 /a/x.jpg"}, {}},
        {{0, "-rw-r--r-- 1 0 0 12 May  9 10:00 /a/x.jpg/x.jpg"}, {}},
        {{0, "-rw-r--r-- 1 0 0 12 May  9 10:00 /a/other.jpg"}, {}},
        {{0, "-rw-r--r-- 1 0 0 99999999999999999999 May  9 10:00 /a/x.jpg"}, {}},
        {{0, "-rw-r--r-- 1 0 0 -1 May  9 10:00 /a/x.jpg"}, {}},
        {{0, ""}, {}},
        {{1, "-rw-r--r-- 1 0 0 12 May  9 10:00 /a/x.jpg"}, {}},
    };
    for (const auto& [result, size] : cases) {
        runner->answer = [&result](const auto&) { return result; };
        EXPECT_EQ(store.fileSize(server("/a/x.jpg")), size) << result.output;
    }
    EXPECT_EQ(scripts().front(), "ls -ln \"/a/x.jpg\"\n");
}

TEST_F(SFTPFileStoreTest, ReadsASizeWhereTheClientCannotPrintTheName) {
    answer({{0, "-rw-r--r-- 1 0 0 12 May  9 10:00 /\\303\\234/\\303\\274.jpg"},
            {0, "-rw-r--r-- 1 0 0 12 May  9 10:00 /a\\303"},
            {0, "-rw-r--r-- 1 0 0 12 May  9 10:00 /\\303\\274\\303.jpg"},
            {0, "-rw-r--r-- 1 0 0 12 May  9 10:00 /\\303\\274/\\303\\274"}});
    EXPECT_EQ(store.fileSize(server("/Ü/ü.jpg")), 12);
    EXPECT_EQ(store.fileSize(server("/a\\303")), 12);
    EXPECT_EQ(store.fileSize(server("/ü\\303.jpg")), 12);
    EXPECT_EQ(store.fileSize(server("/ü")), std::nullopt);
}

TEST_F(SFTPFileStoreTest, ReadsANameThatEndsInBlanks) {
    const std::string line = "-rw-r--r-- 1 0 0 12 May  9 10:00 /a/z";
    answer({{0, line, " "}, {0, line}, {0, line, "  "}});
    EXPECT_EQ(store.fileSize(server("/a/z ")), 12);
    EXPECT_EQ(store.fileSize(server("/a/z ")), std::nullopt);
    EXPECT_EQ(store.fileSize(server("/a/z ")), std::nullopt);
    runner->calls.clear();
    answer({{0, "sftp> -ls -ln \"/a\"\ndrwxr-xr-x 1 0 0 0 May  9 10:00 /a/b", " "},
            {0, "sftp> -ls -ln \"/a/b \"\n-rw-r--r-- 1 0 0 3 May  9 10:00 /a/b /z", " "}});
    EXPECT_EQ(store.existingFileKeys(server("/a")), FileKeys{"z |3"});
}

TEST_F(SFTPFileStoreTest, ListsBracesAsTheyAre) {
    store.fileExists(server("/{a}"));
    store.fileSize(server("/{a}"));
    store.existingFileKeys(server("/{a}"));
    EXPECT_EQ(scripts(), (std::vector<std::string>{"ls -ln \"/\\{a\\}\"\n", "ls -ln \"/\\{a\\}\"\n",
                                                   "-ls -ln \"/\\{a\\}\"\n"}));
}

TEST_F(SFTPFileStoreTest, ReadsTheFreeSpace) {
    answer({{0,
             "sftp> df \"/a\"\n        Size         Used        Avail       (root)    %Capacity\n"
             "   264212084     19593208     80743980    244618876           7%"},
            {1, "1 2 3"}});
    EXPECT_EQ(store.availableCapacity(server("/a")), std::int64_t{80743980} * 1024);
    EXPECT_EQ(store.availableCapacity(server("/a")), std::nullopt);
    EXPECT_EQ(scripts().front(), "df \"/a\"\n");
}

TEST_F(SFTPFileStoreTest, ProbesWhetherAFolderIsWritable) {
    for (const bool isLeftByACrash : {false, true}) {
        if (isLeftByACrash) folder.write("root/.bildkurier-probe", "what was there");
        runner->calls.clear();
        runner->answer = [this](const auto&) {
            EXPECT_EQ(tree(folder.path("root")), (Tree{{".bildkurier-probe", ""}}));
            return CommandResult{0, ""};
        };
        EXPECT_TRUE(store.isWritableDirectory(server("/photos/")));
        EXPECT_EQ(scripts(), std::vector<std::string>{"cd \"/photos/\"\nput \"" +
                                                      folder.path("root/.bildkurier-probe") +
                                                      "\" \"/photos/.bildkurier-probe\"\n"
                                                      "rm \"/photos/.bildkurier-probe\"\n"});
        EXPECT_EQ(tree(folder.path("root")), Tree{});
    }
}

TEST_F(SFTPFileStoreTest, ProbesOneServerWhileAnotherDoesNotAnswer) {
    const Tree probe{{".bildkurier-probe", ""}};
    const auto otherRunner = std::make_shared<ScriptedCommandRunner>();
    SFTPFileStore other(otherRunner, "/usr/bin/sftp", [this] { return login; }, folder.url("root"));
    otherRunner->answer = [&](const auto&) {
        EXPECT_EQ(tree(folder.path("root")), probe);
        return CommandResult{0, ""};
    };
    runner->answer = [&](const auto&) {
        EXPECT_TRUE(other.isWritableDirectory(server("/photos")));
        EXPECT_EQ(tree(folder.path("root")), probe);
        return CommandResult{255, "Connection closed"};
    };
    EXPECT_FALSE(store.isWritableDirectory(server("/photos")));
    EXPECT_EQ(otherRunner->calls.size(), 1U);
    EXPECT_EQ(tree(folder.path("root")), Tree{});
}

TEST_F(SFTPFileStoreTest, TakesAFolderForReadOnlyWhenTheProbeFails) {
    const std::string cd = "sftp> cd \"/photos\"\n";
    const std::string rm = cd + "sftp> rm \"/photos/.bildkurier-probe\"\n";
    const struct {
        std::string output;
        bool isWritable;
    } cases[] = {
        {"Permission denied", false},
        {cd + "stat remote: No such file or directory", false},
        {rm + "remote delete /photos/.bildkurier-probe: Permission denied", false},
        // Another program has removed the probe, which was there then.
        {rm + "remote delete /photos/.bildkurier-probe: No such file or directory", true},
        {rm + "Couldn't delete file: No such file or directory\r\nConnection closed", true},
    };
    for (const auto& [output, isWritable] : cases) {
        runner->answer = [&output](const auto&) { return CommandResult{1, output}; };
        EXPECT_EQ(store.isWritableDirectory(server("/photos")), isWritable) << output;
        EXPECT_EQ(tree(folder.path("root")), Tree{});
    }
}

TEST_F(SFTPFileStoreTest, IsWaitedForUntilItsProbeIsGone) {
    std::promise<void> begun;
    std::promise<void> mayEnd;
    std::atomic<bool> isGone = false;
    runner->answer = [&](const auto&) {
        begun.set_value();
        mayEnd.get_future().wait();
        isGone = true;
        return CommandResult{0, ""};
    };
    store.awaitProbes(std::chrono::hours(1));  // for none
    const std::jthread probing([&] { EXPECT_TRUE(store.isWritableDirectory(server("/photos"))); });
    begun.get_future().wait();
    store.awaitProbes(std::chrono::milliseconds(0));
    EXPECT_FALSE(isGone);
    mayEnd.set_value();
    store.awaitProbes(std::chrono::hours(1));
    EXPECT_TRUE(isGone);
}

TEST_F(SFTPFileStoreTest, ProbesNothingWithoutAPlaceForTheProbe) {
    folder.write("root", "a file");
    EXPECT_FALSE(store.isWritableDirectory(server("/photos")));
    EXPECT_EQ(runner->calls.size(), 0U);
}

TEST_F(SFTPFileStoreTest, MakesAFolderAndAllAboveItInOneRun) {
    EXPECT_TRUE(store.createDirectory(server("/photos/2024")));
    EXPECT_TRUE(store.createDirectory(server("/")));
    EXPECT_EQ(scripts(), (std::vector<std::string>{
                             "-mkdir \"/photos\"\n-mkdir \"/photos/2024\"\ncd \"/photos/2024\"\n",
                             "cd \"/\"\n"}));
}

TEST_F(SFTPFileStoreTest, SaysWhyAFolderCannotBeMade) {
    const struct {
        std::string output;
        std::string reason;
    } cases[] = {
        {"sftp> cd \"/a\"\nremote mkdir \"/a\": Permission denied\nConnection closed",
         "Der Server verweigert den Zugriff (remote mkdir \"/a\": Permission denied)"},
        {"remote mkdir \"/a\": Permission denied\r\nstat remote: No such file or directory",
         "Der Server verweigert den Zugriff (remote mkdir \"/a\": Permission denied)"},
        {"remote mkdir \"/a\": Failure\r\nstat remote: No such file or directory",
         "Der Server kann den Ordner nicht anlegen; vielleicht liegt dort eine Datei dieses "
         "Namens, oder es ist kein Platz mehr (remote mkdir "
         "\"/a\": Failure)"},
        {"sftp> cd \"/a\"\nConnection closed",
         "Die Verbindung ist abgebrochen (Connection closed)"},
        {"sftp> cd \"/a\"", "Die Verbindung ist abgebrochen"},
        {"something new", "something new"},
    };
    for (const auto& [output, reason] : cases) {
        runner->calls.clear();
        answer({{1, output}});
        EXPECT_EQ(store.createDirectory(server("/a")).error().message,
                  "Ordner lässt sich nicht anlegen: " + reason);
    }
}

TEST_F(SFTPFileStoreTest, LetsNoServerWriteToTheTerminal) {
    const auto local = folder.write("staged", "picture");
    const std::string sent = "\x1b]0;title\x07 \u202egpj.x\u200b \u009b2J";
    const std::string shown = "␛]0;title␇ \uFFFDgpj.x\uFFFD \uFFFD2J";
    runner->answer = [&sent](const auto&) { return CommandResult{1, "remote: " + sent}; };
    EXPECT_EQ(store.createDirectory(server("/a")).error().message,
              "Ordner lässt sich nicht anlegen: remote: " + shown);
    for (const bool isDoubtful : {false, true}) {
        if (isDoubtful) {
            EXPECT_FALSE(store.fileExists(server("/a")));
        }
        EXPECT_EQ(store.moveItem(Url::file(local), server("/a")).error().message,
                  "Übertragung fehlgeschlagen: remote: " + shown);
    }
    runner->answer = [](const auto&) { return CommandResult{1, "sftp> cd\nsftp> \x1b"}; };
    EXPECT_EQ(store.createDirectory(server("/a")).error().message,
              "Ordner lässt sich nicht anlegen: Die Verbindung ist abgebrochen");
}

TEST_F(SFTPFileStoreTest, AdvisesHowToFindOutWhatAQuietClientKeepsToItself) {
    const std::string failed = "Ordner lässt sich nicht anlegen: ";
    const std::string advice =
        failed +
        "Der Server ist nicht zu erreichen oder lässt die Anmeldung nicht zu. Den Grund zeigt im "
        "Terminal der Befehl: sftp ";
    Url withPort = server("/a");
    withPort.port = 2222;
    const struct {
        SSHLogin login;
        Url url;
        CommandResult result;
        std::string message;
    } cases[] = {
        {SSHLogin::userSSH(), server("/a"), {255, "Connection closed"}, advice + "anna@nas"},
        {SSHLogin::userSSH(), withPort, {255, ""}, advice + "-P 2222 anna@nas"},
        {SSHLogin::userSSH(), server("/a"), {255, "Why\nConnection closed"}, failed + "Why"},
        {SSHLogin::userSSH(), server("/a"), {255, "Why"}, failed + "Why"},
        {SSHLogin::userSSH(),
         server("/a"),
         {255, "sftp> -mkdir \"/a\"\nConnection closed"},
         failed + "Die Verbindung ist abgebrochen"},
        {SSHLogin::userSSH(),
         server("/a"),
         {1, "sftp> cd \"/a\""},
         failed + "Die Verbindung ist abgebrochen"},
        {appKey,
         server("/a"),
         {255, "Connection closed"},
         failed + "Die Verbindung ist abgebrochen (Connection closed)"},
    };
    for (const auto& [who, url, result, message] : cases) {
        login = who;
        runner->answer = [&result](const auto&) { return result; };
        EXPECT_EQ(store.createDirectory(url).error().message, message);
    }
}

TEST_F(SFTPFileStoreTest, PassesOnThatTheHostKeyHasChanged) {
    answer({{255, "@@@ WARNING @@@\r\nHost key verification failed.\r\nConnection closed"}});
    const auto made = store.createDirectory(server("/a"));
    ASSERT_FALSE(made);
    EXPECT_TRUE(made.error().message.contains(hostKeyMismatch));
}

TEST_F(SFTPFileStoreTest, UploadsUnderAnotherNameThenConfirmsTheSize) {
    const auto local = folder.write("staging/a b.jpg", "picture");
    answer({{0, ""}, {0, "-rw-r--r-- 1 0 0 7 May  9 10:00 /p/A [1].jpg"}});
    EXPECT_TRUE(store.moveItem(Url::file(local), server("/p/A [1].jpg")));
    EXPECT_EQ(scripts(),
              (std::vector<std::string>{"put \"" + local +
                                            "\" \"/p/A [1].jpg.part\"\n"
                                            "rename \"/p/A [1].jpg.part\" \"/p/A [1].jpg\"\n",
                                        "ls -ln \"/p/A [1].jpg\"\n"}));
    EXPECT_FALSE(fs::exists(local));
}

TEST_F(SFTPFileStoreTest, UploadsUnderANameThatIsNotTooLong) {
    const struct {
        std::string name;
        std::string part;
    } cases[] = {
        {std::string(250, 'n'), std::string(250, 'n') + ".part"},
        {std::string(251, 'n'), std::string(250, 'n') + ".part"},
        {std::string(255, 'n'), std::string(250, 'n') + ".part"},
        {std::string(249, 'n') + "ü.jpg", std::string(249, 'n') + ".part"},
        {std::string(251, '\x80'), ".part"},
    };
    const auto local = folder.write("staged", "picture");
    for (const auto& [name, part] : cases) {
        runner->calls.clear();
        (void)store.moveItem(Url::file(local), server("/p/" + name));
        EXPECT_TRUE(
            scripts().at(0).ends_with(fmt::format("rename \"/p/{}\" \"/p/{}\"\n", part, name)))
            << scripts().at(0);
    }
}

TEST_F(SFTPFileStoreTest, KeepsTheFileWhenTheUploadFails) {
    const auto local = folder.write("staged", "picture");
    answer({{1, "sftp> put\nwrite remote \"/p/A.part\": Failure"}, {1, "not found"}});
    EXPECT_EQ(
        store.moveItem(Url::file(local), server("/p/A")).error().message,
        "Übertragung fehlgeschlagen: Der Server nimmt nicht mehr an; vielleicht ist dort kein "
        "Platz mehr (write remote \"/p/A.part\": Failure)");
    EXPECT_EQ(scripts().size(), 2U);
    EXPECT_EQ(scripts().back(), "-rm \"/p/A.part\"\n");
    EXPECT_TRUE(fs::exists(local));
}

TEST_F(SFTPFileStoreTest, KeepsTheFileUntilTheServerHasAllOfIt) {
    const CommandResult answers[] = {
        {0, "-rw-r--r-- 1 0 0 6 May  9 10:00 /p/A"},
        {0, ""},
        {0, "drwxr-xr-x 1 0 0 7 May  9 10:00 /p/A"},
        {255, "Connection closed"},
    };
    for (const auto& sizeAnswer : answers) {
        const auto local = folder.write("staged", "picture");
        runner->calls.clear();
        answer({{0, ""}, sizeAnswer, {1, "rm failed"}});
        EXPECT_EQ(store.moveItem(Url::file(local), server("/p/A")).error().message,
                  "Größe stimmt nach der Übertragung nicht");
        EXPECT_EQ(scripts().size(), 3U);
        EXPECT_EQ(scripts().back(), "-rm \"/p/A\"\n");
        EXPECT_TRUE(fs::exists(local));
    }
}

TEST_F(SFTPFileStoreTest, UploadsNothingThatIsGone) {
    for (const Url& source : {folder.url("missing"), folder.url("")}) {
        EXPECT_EQ(store.moveItem(source, server("/p/A")).error().message,
                  "Übertragung fehlgeschlagen: Die geladene Datei ist nicht mehr da");
    }
    EXPECT_EQ(runner->calls.size(), 0U);
}

TEST_F(SFTPFileStoreTest, ConfirmsTheSizeFromBeforeTheUpload) {
    const auto local = folder.write("staged", "picture");
    const struct {
        std::function<void()> meanwhile;
        int sizeThere;
        bool isGood;
    } cases[] = {
        {[&] { fs::remove(local); }, 7, true},
        {[&] { fs::remove(local); }, 6, false},
        {[&] { folder.write("staged", "other."); }, 6, false},
    };
    for (const auto& [meanwhile, sizeThere, isGood] : cases) {
        folder.write("staged", "picture");
        runner->calls.clear();
        runner->answer = [&](const ScriptedCommandRunner::Call& call) {
            if (call.input->starts_with("put")) meanwhile();
            return CommandResult{0,
                                 fmt::format("-rw-r--r-- 1 0 0 {} May  9 10:00 /p/A", sizeThere)};
        };
        EXPECT_EQ(store.moveItem(Url::file(local), server("/p/A")).has_value(), isGood);
        EXPECT_EQ(scripts().back() == "-rm \"/p/A\"\n", !isGood);
    }
}

TEST_F(SFTPFileStoreTest, RemovesAFileOrAnEmptyFolder) {
    answer({{1, "failed"}});
    store.removeItem(server("/a/b"));
    EXPECT_EQ(scripts(), std::vector<std::string>{"-rm \"/a/b\"\n-rmdir \"/a/b\"\n"});
}

TEST_F(SFTPFileStoreTest, ListsOneLevelARun) {
    answer({{0,
             "sftp> -ls -ln \"/p\"\ndrwxr-xr-x 1 0 0 0 May  9 10:00 /p/a\n"
             "drwxr-xr-x 1 0 0 0 May  9 10:00 /p/b c\n-rw-r--r-- 1 0 0 3 May  9 10:00 /p/X.JPG"},
            {0,
             "sftp> -ls -ln \"/p/a\"\n-rw-r--r-- 1 0 0 4 May  9 10:00 /p/a/Y.JPG\n"
             "sftp> -ls -ln \"/p/b c\"\n-rw-r--r-- 1 0 0 5 May  9 10:00 /p/b c/Z.JPG"}});
    EXPECT_EQ(store.existingFileKeys(server("/p")), (FileKeys{"x.jpg|3", "y.jpg|4", "z.jpg|5"}));
    EXPECT_EQ(scripts(), (std::vector<std::string>{"-ls -ln \"/p\"\n",
                                                   "-ls -ln \"/p/a\"\n-ls -ln \"/p/b c\"\n"}));
}

TEST_F(SFTPFileStoreTest, KeepsTheKeysItHasWhenAListingFails) {
    answer({{0,
             "sftp> -ls -ln \"/p\"\ndrwxr-xr-x 1 0 0 0 May  9 10:00 /p/a\n"
             "-rw-r--r-- 1 0 0 3 May  9 10:00 /p/X.JPG"},
            {255, "sftp> -ls -ln \"/p/a\"\n-rw-r--r-- 1 0 0 4 May  9 10:00 /p/a/Y.JPG"}});
    EXPECT_EQ(store.existingFileKeys(server("/p")), FileKeys{"x.jpg|3"});
}

TEST_F(SFTPFileStoreTest, HasNoKeysWhenTheFirstListingFails) {
    answer({{255, "sftp> -ls -ln \"/p\"\n-rw-r--r-- 1 0 0 3 May  9 10:00 /p/X.JPG"}});
    EXPECT_EQ(store.existingFileKeys(server("/p")), FileKeys{});
}

TEST_F(SFTPFileStoreTest, PutsNothingWhereAListingBrokeOffUntilItIsWhole) {
    const auto local = folder.write("staged", "picture");
    const std::string trouble =
        "Damit nichts doppelt geladen wird, muss sich der Ordner erst ganz auflisten lassen; "
        "zuletzt ging das nicht: Die Verbindung ist abgebrochen (Broken pipe)";
    answer({{255, "sftp> -ls -ln \"/p\"\nBroken pipe\nConnection closed"}});
    EXPECT_EQ(store.listing(server("/p")),
              FileListing{.trouble = "Die Verbindung ist abgebrochen (Broken pipe)"});
    EXPECT_EQ(store.moveItem(Url::file(local), server("/p/JPG/A")).error().message,
              "Übertragung fehlgeschlagen: " + trouble);
    for (const auto* within : {"/p", "/p/", "/p/JPG"}) {
        const auto admitted = store.admitsFiles(server(within));
        ASSERT_FALSE(admitted) << within;
        EXPECT_EQ(admitted.error().message, trouble);
    }
    EXPECT_TRUE(store.admitsFiles(server("/pp")));
    EXPECT_FALSE(store.moveItem(Url::file(local), server("/p/A")));
    EXPECT_EQ(runner->calls.size(), 1U);
    EXPECT_TRUE(fs::exists(local));

    // A folder of it may be made, and be checked and listed as a destination of its own.
    runner->calls.clear();
    answer({{0, ""}, {0, "sftp> -ls -ln \"/p/q\""}, {1, "full"}, {0, "sftp> -ls -ln \"/p\""}});
    EXPECT_TRUE(store.createDirectory(server("/p/q")));
    EXPECT_EQ(store.existingFileKeys(server("/p/q")), FileKeys{});
    EXPECT_TRUE(store.admitsFiles(server("/p/q")));
    EXPECT_EQ(store.moveItem(Url::file(local), server("/p/q/A")).error().message,
              "Übertragung fehlgeschlagen: full");
}

TEST_F(SFTPFileStoreTest, TellsEachOfTwoListingsAtOnceItsOwnTrouble) {
    const CommandResult whole{0,
                              "sftp> -ls -ln \"/p\"\n"
                              "-rw-r--r-- 1 0 0 3 May  9 10:00 /p/X.JPG"};
    const CommandResult broken{255, "sftp> -ls -ln \"/p\"\nBroken pipe\nConnection closed"};
    const FileListing wholeListing{.keys = {"x.jpg|3"}};
    const FileListing brokenListing{.trouble = "Die Verbindung ist abgebrochen (Broken pipe)"};
    for (const bool firstBreaks : {true, false}) {
        FileListing second;
        runner->calls.clear();
        runner->answer = [&](const auto&) {
            if (runner->calls.size() > 1) return firstBreaks ? whole : broken;
            second = store.listing(server("/p"));
            return firstBreaks ? broken : whole;
        };
        EXPECT_EQ(store.listing(server("/p")), firstBreaks ? brokenListing : wholeListing);
        EXPECT_EQ(second, firstBreaks ? wholeListing : brokenListing);
    }
}

TEST_F(SFTPFileStoreTest, PutsNothingIntoAFolderThatCannotBeListed) {
    const auto local = folder.write("staged", "picture");
    const std::string denied = "remote readdir(\"/p/JPG/\"): Permission denied";
    const std::string top =
        "sftp> -ls -ln \"/p\"\ndrwxr-xr-x 1 0 0 0 May  9 10:00 /p/JPG\n"
        "drwxr-xr-x 1 0 0 0 May  9 10:00 /p/MP4";
    const std::string mp4 = "sftp> -ls -ln \"/p/MP4\"\n-rw-r--r-- 1 0 0 4 May  9 10:00 /p/MP4/Y";
    const std::string jpg = "sftp> -ls -ln \"/p/JPG\"\n";
    const CommandResult full{1, "full"};
    const CommandResult removed{0, ""};
    answer({{0, top}, {0, jpg + denied + "\n" + mp4}, full, removed});
    EXPECT_EQ(store.listing(server("/p")), FileListing{.keys = {"y|4"}});
    for (const auto* barred : {"/p/JPG/A", "/p/JPG/2024/A"}) {
        EXPECT_EQ(store.moveItem(Url::file(local), server(barred)).error().message,
                  "Übertragung fehlgeschlagen: Damit nichts doppelt geladen wird, muss sich der "
                  "Ordner erst ganz auflisten lassen; zuletzt ging das nicht: Der Server "
                  "verweigert den Zugriff (" +
                      denied + ")");
    }
    EXPECT_EQ(runner->calls.size(), 2U);
    EXPECT_EQ(store.moveItem(Url::file(local), server("/p/MP4/A")).error().message,
              "Übertragung fehlgeschlagen: full");

    runner->calls.clear();
    answer({{0, top}, {0, jpg + mp4}, full, removed});
    EXPECT_EQ(store.existingFileKeys(server("/p")), FileKeys{"y|4"});
    EXPECT_EQ(store.moveItem(Url::file(local), server("/p/JPG/A")).error().message,
              "Übertragung fehlgeschlagen: full");
}

TEST_F(SFTPFileStoreTest, KnowsThatItCouldNotListTheDestinationItself) {
    const std::string listing = "sftp> -ls -ln \"/p\"\n";
    const std::string noAnswer = "Die Antwort des Servers ist nicht zu lesen";
    const struct {
        std::string output;
        std::string trouble;
    } cases[] = {
        {listing + "remote readdir(\"/p/\"): Failure\r",
         "Der Server meldet einen Fehler (remote readdir(\"/p/\"): Failure)"},
        {listing + "Couldn't read directory: Failure",
         "Der Server meldet einen Fehler (Couldn't read directory: Failure)"},
        {"", noAnswer},
        {"Willkommen " + listing + "-rw-r--r-- 1 0 0 3 May  9 10:00 /p/X.JPG", noAnswer},
    };
    for (const auto& [output, trouble] : cases) {
        runner->answer = [&output](const auto&) { return CommandResult{0, output}; };
        EXPECT_EQ(store.listing(server("/p")), FileListing{.trouble = trouble});
        const auto files = store.files(server("/p"));
        ASSERT_FALSE(files);
        EXPECT_EQ(files.error().message, trouble);
    }
    runner->answer = [&](const auto&) {
        return CommandResult{0, listing + "Can't ls: \"/p\" not found"};
    };
    EXPECT_EQ(store.listing(server("/p")), FileListing());
}

TEST_F(SFTPFileStoreTest, NamesTheFoldersThatItCouldNotListBesideTheFilesOfTheOthers) {
    for (const std::string above : {"/p/", "/"}) {
        const std::string command = "sftp> -ls -ln \"" + (above == "/" ? above : "/p") + "\"\n";
        const std::string row = " 1 0 0 4 May  9 10:00 " + above;
        const std::string listing = "sftp> -ls -ln \"" + above;
        answer({{0, command + "drwxr-xr-x" + row + "a\ndrwxr-xr-x" + row + "b\ndrwxr-xr-x" + row +
                        "c\n-rw-r--r--" + row + "X"},
                {0, listing + "a\"\nremote readdir(\"" + above + "a/\"): Permission denied\n" +
                        listing + "b\"\n-rw-r--r--" + row + "b/Y"}});
        runner->calls.clear();
        const Url top = server(above == "/" ? above : "/p");
        const auto found = store.files(top);
        ASSERT_TRUE(found) << found.error().message;
        EXPECT_EQ(found->unreadable, (std::vector<std::string>{"a", "c"}));
        EXPECT_EQ(found->files, (std::vector<ContentReader::File>{
                                    {.place = {.folder = top, .path = "X"}, .size = 4},
                                    {.place = {.folder = top, .path = "b/Y"}, .size = 4}}));
    }
}

TEST_F(SFTPFileStoreTest, SeesEightLevels) {
    runner->answer = [](const ScriptedCommandRunner::Call& call) {
        const auto& script = *call.input;
        const auto path = script.substr(9, script.size() - 11);
        return CommandResult{0, "sftp> " + script + "drwxr-xr-x 1 0 0 0 May  9 10:00 " + path +
                                    "/d\n-rw-r--r-- 1 0 0 " + std::to_string(path.size()) +
                                    " May  9 10:00 " + path + "/f"};
    };
    EXPECT_EQ(store.existingFileKeys(server("/p")),
              (FileKeys{"f|2", "f|4", "f|6", "f|8", "f|10", "f|12", "f|14", "f|16"}));
    EXPECT_EQ(runner->calls.size(), 8U);
}

/// Calls everything that talks to a server; answers the messages of what fails with one.
std::vector<std::string> callEverything(SFTPFileStore& store, const Url& url, const Url& local) {
    EXPECT_EQ(store.existingFileKeys(url), FileKeys{});
    EXPECT_FALSE(store.fileExists(url));
    EXPECT_EQ(store.fileSize(url), std::nullopt);
    EXPECT_FALSE(store.isWritableDirectory(url));
    EXPECT_EQ(store.availableCapacity(url), std::nullopt);
    store.removeItem(url);
    return {store.createDirectory(url).error().message, store.moveItem(local, url).error().message};
}

TEST_F(SFTPFileStoreTest, StartsNothingThatCannotGoWell) {
    const auto local = folder.write("staged", "picture");
    const auto withHost = [](std::string user, std::string host) {
        return Url{
            .scheme = "sftp", .user = std::move(user), .host = std::move(host), .path = "/a"};
    };
    const std::string invalid = "Der Benutzer oder der Rechner ist ungültig";
    const std::string control = "Der Pfad enthält Zeilenumbrüche oder Steuerzeichen";
    const std::string tooLong = "Der Pfad ist zu lang";
    const struct {
        Url url;
        std::string reason;
    } cases[] = {
        {withHost("anna", ""), "Kein Rechner angegeben"},
        {withHost("", "-oProxyCommand=x"), invalid},
        {withHost("-oProxyCommand=x", "nas"), invalid},
        {withHost("", "nas:ab"), invalid},
        {withHost("", "a:b:c"), invalid},
        {withHost("a:b", "nas"), invalid},
        {withHost("", "[::1]:22"), invalid},
        {withHost("", "nas\n"), invalid},
        {withHost("anna", "-oProxyCommand=x"), invalid},
        {withHost("anna", "[]"), invalid},
        {withHost("anna", "n;s"), invalid},
        {server("/a\n!touch x"), control},
        {server(std::string("/a\0b", 4)), control},
        {server("/a\r"), control},
        {server("/a\x7F"), control},
        {server("/a\u0085"), control},
        {server("/" + std::string(2100, 'a')), tooLong},
    };
    for (const auto& [url, reason] : cases) {
        EXPECT_EQ(callEverything(store, url, Url::file(local)),
                  (std::vector{"Ordner lässt sich nicht anlegen: " + reason,
                               "Übertragung fehlgeschlagen: " + reason}))
            << url.path;
    }
    EXPECT_EQ(runner->calls.size(), 0U);
    EXPECT_TRUE(fs::exists(local));
}

TEST_F(SFTPFileStoreTest, StartsNothingWithoutAKey) {
    login = SSHLogin::missingKey();
    const auto local = folder.write("staged", "picture");
    const std::string reason =
        "Noch kein ssh-Schlüssel: unter Ziel → SFTP „Schlüssel erzeugen“ oder „übernehmen“.";
    EXPECT_EQ(callEverything(store, server("/a"), Url::file(local)),
              (std::vector{"Ordner lässt sich nicht anlegen: " + reason,
                           "Übertragung fehlgeschlagen: " + reason}));
    EXPECT_EQ(runner->calls.size(), 0U);
}

TEST_F(SFTPFileStoreTest, StartsNothingWithFilesWhoseNamesTheClientMisreads) {
    const std::string reason =
        "Ordner lässt sich nicht anlegen: Der Datenordner hat Zeichen im Namen, die ssh nicht "
        "versteht (% \" \\ ${)";
    for (const std::string odd : {"%d", "\"", "\\", "${HOME}", "\n"}) {
        const Url plain = Url::file("/data/file");
        const Url misread = Url::file("/data/a" + odd + "b");
        for (const auto& who :
             {SSHLogin::appKey(misread, plain), SSHLogin::appKey(plain, misread)}) {
            login = who;
            EXPECT_EQ(store.createDirectory(server("/a")).error().message, reason) << odd;
        }
    }
    EXPECT_EQ(runner->calls.size(), 0U);
    login = SSHLogin::appKey(Url::file("/d'a$t #a/ü"), Url::file("/d'a$t #a/ü {x}"));
    EXPECT_TRUE(store.createDirectory(server("/a")));
}

TEST_F(SFTPFileStoreTest, UploadsNothingFromAPathWithALineBreak) {
    const auto local = folder.write("line\nbreak", "picture");
    EXPECT_EQ(store.moveItem(Url::file(local), server("/a")).error().message,
              "Übertragung fehlgeschlagen: Der Pfad enthält Zeilenumbrüche oder Steuerzeichen");
    EXPECT_EQ(runner->calls.size(), 0U);
    EXPECT_TRUE(fs::exists(local));
}

TEST_F(SFTPFileStoreTest, SaysThatTheClientIsMissing) {
    answer({{-1, "/usr/bin/sftp lässt sich nicht starten: fehlt"}});
    EXPECT_EQ(store.createDirectory(server("/a")).error().message,
              "Ordner lässt sich nicht anlegen: /usr/bin/sftp lässt sich nicht starten: fehlt");
}

TEST_F(SFTPFileStoreTest, ReachesHostsByTheirBracketedAddress) {
    store.fileExists({.scheme = "sftp", .user = "anna", .host = "[::1]", .path = "/a"});
    EXPECT_EQ(runner->calls.at(0).arguments.back(), "anna@[::1]");
}

}  // namespace
}  // namespace bildkurier
