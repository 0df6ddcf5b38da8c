// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportLock.h"
#include "ProgramCall.h"
#include "RunningProgram.h"
#include "SftpServerTest.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <future>
#include <mutex>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

using Strings = std::vector<std::string>;

/// The command line and a real server, which takes the program's own key.
class SftpProgramTest : public SftpServerTest {
protected:
    void SetUp() override {
        SftpServerTest::SetUp();
        if (IsSkipped()) return;
        for (const auto& [name, contents] : card)
            user.write("card/DCIM/100BILDK/" + name, contents);
        ASSERT_EQ(run({"key", "import", server->login().keyFile.path}).exitStatus, 0);
    }

    /// As a user calls it who takes nothing away from the permissions of new files.
    ProgramCall call(const Strings& words) const {
        ProgramCall call{.path = "/bin/sh",
                         .arguments = {"-c", "umask 0; exec \"$0\" \"$@\"", BILDKURIER_CLI},
                         .environment = environment};
        call.arguments.insert(call.arguments.end(), words.begin(), words.end());
        return call;
    }
    ProgramResult run(const Strings& words) const { return call(words).run(); }

    std::string address(const std::string& relative = "fotos") const {
        const auto url = server->url(relative);
        return fmt::format("sftp://{}@{}:{}{}", url.user, url.host, *url.port, url.path);
    }
    Strings import(const std::string& relative = "fotos") const {
        return {"import", "--card", user.path("card"), "--to", address(relative), "--no-by-type"};
    }
    Strings plan() const {
        return {"plan", "--card", user.path("card"), "--to", address(), "--no-by-type"};
    }

    /// Besides the lock on imports.
    void expectNothingStaged() const {
        Strings files;
        for (const auto& [path, contents] : tree(user.path("cache")))
            if (!path.ends_with('/') && !path.ends_with("/import.lock")) files.push_back(path);
        EXPECT_EQ(files, Strings{});
    }

    unsigned permissions(const std::string& file) const {
        return static_cast<unsigned>(fs::status(user.path("data" + file)).permissions());
    }

    TemporaryFolder user;
    std::map<std::string, std::string> environment{{"TZ", "Europe/Berlin"},
                                                   {"XDG_CONFIG_HOME", user.makeFolder("config")},
                                                   {"XDG_DATA_HOME", user.path("data")},
                                                   {"XDG_CACHE_HOME", user.path("cache")},
                                                   {"XDG_RUNTIME_DIR", user.makeFolder("runtime")}};
    Tree card{{"IMG_0001.JPG", "one"},
              {"IMG_0002.JPG", "the second"},
              {"IMG_0003.JPG", std::string(100'000, 'x')}};
};

TEST_F(SftpProgramTest, LoadsACardAndThenNothing) {
    const auto first = run(import());
    EXPECT_TRUE(first.out.contains("Erste Verbindung: Server-Schlüssel SHA256:")) << first.out;
    EXPECT_EQ(first.exitStatus, 0) << first.err;
    EXPECT_TRUE(first.out.contains("IMG_0002.JPG  (")) << first.out;
    EXPECT_EQ(tree(server->path("fotos")), card);
    const auto second = run(import());
    EXPECT_EQ(second.exitStatus, 0) << second.err;
    EXPECT_FALSE(second.out.contains("✓")) << second.out;
    EXPECT_FALSE(second.out.contains("Server-Schlüssel")) << second.out;
    EXPECT_EQ(tree(server->path("fotos")), card);
    expectNothingStaged();
}

TEST_F(SftpProgramTest, LeavesTheServerAloneWhileAnotherImportRuns) {
    ImportLock lock({user.path("runtime/bildkurier/import.lock")});
    ASSERT_TRUE(lock.acquire());
    const auto refused = run(import("fotos/neu"));
    EXPECT_EQ(refused.exitStatus, 4);
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(refused.err, "Es läuft schon ein Import.\n");
    EXPECT_EQ(serversTree(), Tree{});
    EXPECT_TRUE(server->connection().finished().empty());
    lock.release();
    const auto first = run(import("fotos/neu"));
    EXPECT_EQ(first.exitStatus, 0) << first.err;
    EXPECT_TRUE(first.out.contains("Erste Verbindung: ")) << first.out;
    EXPECT_EQ(tree(server->path("fotos/neu")), card);
}

TEST_F(SftpProgramTest, LoadsOntoTheServerThatWasChecked) {
    const auto checked = run({"sftp", "check", address()});
    EXPECT_EQ(checked.exitStatus, 0) << checked.err;
    const auto loaded = run({"import", "--card", user.path("card"), "--no-by-type"});
    EXPECT_EQ(loaded.exitStatus, 0) << loaded.err;
    EXPECT_EQ(tree(server->path("fotos")), card);
    // Another one that is no good changes nothing.
    fs::permissions(server->path(""), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(run({"sftp", "check", address("andere")}).exitStatus, 4);
    const auto again = run({"import", "--card", user.path("card"), "--no-by-type"});
    EXPECT_EQ(again.exitStatus, 0) << again.err;
    EXPECT_FALSE(again.out.contains("✓")) << again.out;
}

TEST_F(SftpProgramTest, KnowsAServerAndRefusesAnotherKeyUntilToldToForget) {
    const Strings check{"sftp", "check", address()};
    const auto first = run(check);
    EXPECT_EQ(first.exitStatus, 0) << first.err;
    EXPECT_TRUE(first.out.contains("Erste Verbindung: Server-Schlüssel SHA256:")) << first.out;
    const auto second = run(check);
    EXPECT_EQ(second.exitStatus, 0) << second.err;
    EXPECT_TRUE(second.out.contains("\nServer-Schlüssel: SHA256:")) << second.out;

    server->changeHostKey();
    for (const auto& words : {check, import(), plan()}) {
        const auto refused = run(words);
        EXPECT_EQ(refused.exitStatus, 4);
        EXPECT_TRUE(refused.err.starts_with(
            "Der Server zeigt einen anderen Schlüssel als beim ersten Verbinden. Nur wenn der "
            "Server neu eingerichtet wurde: gespeicherten Server-Schlüssel vergessen."))
            << refused.err;
    }
    EXPECT_EQ(tree(server->path("fotos")), Tree{});

    EXPECT_EQ(run({"sftp", "forget", address()}).exitStatus, 0);
    const auto third = run(check);
    EXPECT_EQ(third.exitStatus, 0) << third.err;
    EXPECT_TRUE(third.out.contains("Erste Verbindung: ")) << third.out;
    EXPECT_NE(third.out, first.out);
}

TEST_F(SftpProgramTest, LetsNobodyElseReadWhatItKeeps) {
    for (const auto& words : {Strings{"sftp", "check", address()}, Strings{"key", "show"},
                              Strings{"key", "generate", "--replace"}}) {
        const auto result = run(words);
        EXPECT_EQ(result.exitStatus, 0) << result.err;
        for (const std::string folder : {"", "/Bildkurier", "/Bildkurier/ssh"})
            EXPECT_EQ(permissions(folder), 0700U) << folder;
        EXPECT_EQ(permissions("/Bildkurier/ssh/schluessel"), 0600U);
    }
}

TEST_F(SftpProgramTest, SaysThatTheKeyIsRefused) {
    server->refuseKeys();
    for (const auto& words : {Strings{"sftp", "check", address()}, import(), plan()}) {
        const auto result = run(words);
        EXPECT_EQ(result.exitStatus, 4);
        EXPECT_TRUE(result.err.starts_with(
            "Ordner lässt sich nicht anlegen: Der Server lässt die Anmeldung mit diesem Schlüssel "
            "nicht zu ("))
            << result.err;
        EXPECT_TRUE(result.err.contains("Permission denied (publickey")) << result.err;
    }
}

TEST_F(SftpProgramTest, NeedsItsOwnKeyWhereTheSystemConfinesIt) {
    environment["APP_SANDBOX_CONTAINER_ID"] = "x";
    EXPECT_EQ(run({"sftp", "check", address()}).exitStatus, 0);
    ASSERT_EQ(run({"key", "remove"}).exitStatus, 0);
    server->connection().finished();
    for (const auto& words : {Strings{"sftp", "check", address()}, import(), plan()}) {
        const auto result = run(words);
        EXPECT_EQ(result.exitStatus, 4);
        EXPECT_TRUE(result.err.contains("Noch kein ssh-Schlüssel: ")) << result.err;
    }
    EXPECT_TRUE(server->connection().finished().empty());
}

TEST_F(SftpProgramTest, SaysThatTheFolderIsReadOnlyOrCannotBeMade) {
    server->makeFolder("fotos");
    fs::permissions(server->path("fotos"), fs::perms::owner_read | fs::perms::owner_exec);
    const auto readOnly = run({"sftp", "check", address()});
    EXPECT_EQ(readOnly.exitStatus, 4);
    EXPECT_EQ(readOnly.err, "Zielordner ist nicht beschreibbar.\n");
    EXPECT_EQ(run(plan()).exitStatus, 0);
    for (const auto& words :
         {Strings{"sftp", "check", address("fotos/neu")}, import("fotos/neu")}) {
        const auto result = run(words);
        EXPECT_EQ(result.exitStatus, 4);
        EXPECT_TRUE(result.err.starts_with("Ordner lässt sich nicht anlegen: ")) << result.err;
    }
    EXPECT_EQ(tree(server->path("fotos")), Tree{});
}

TEST_F(SftpProgramTest, CountsNothingAsMissingWhenTheListBreaksOff) {
    ASSERT_EQ(run(import()).exitStatus, 0);
    server->connection().finished();
    ASSERT_EQ(run(plan()).exitStatus, 0);
    const auto connections = server->connection().finished();  // the last one lists
    for (const auto& words : {plan(), import()}) {
        server->connection().cutNext({unlimited, connections.back().toClient - 150},
                                     connections.size() - 1);
        const auto result = run(words);
        server->connection().finished();
        EXPECT_EQ(result.exitStatus, 4);
        EXPECT_EQ(result.err,
                  "Der Zielordner ließ sich nicht vollständig auflisten: Was dort fehlt, ist nicht "
                  "bekannt. Bitte noch einmal einlesen.\n");
        EXPECT_TRUE(result.out.contains(
            " Zielordner nicht vollständig aufgelistet: Die Verbindung ist abgebrochen ("))
            << result.out;
        EXPECT_FALSE(result.out.contains("bereit zum Import")) << result.out;
    }
    EXPECT_EQ(tree(server->path("fotos")), card);
}

TEST_F(SftpProgramTest, LeavesNoProbeWhereACheckIsInterrupted) {
    const std::string probe = server->path("fotos/.bildkurier-probe");
    std::promise<void> seen;
    std::promise<void> interrupted;
    std::once_flag once;
    server->connection().slowDown(std::chrono::milliseconds(10), [&] {
        if (!fs::exists(probe)) return;
        std::call_once(once, [&] {
            seen.set_value();
            interrupted.get_future().wait();
        });
    });
    RunningProgram program(call({"sftp", "check", address()}));
    EXPECT_EQ(seen.get_future().wait_for(std::chrono::minutes(1)), std::future_status::ready);
    program.send(SIGINT);
    interrupted.set_value();
    const auto result = program.finish();
    server->connection().finished();  // so that nobody looks any more
    EXPECT_EQ(result.exitStatus, 130) << result.err;
    EXPECT_FALSE(fs::exists(probe));
    expectNothingStaged();
}

TEST_F(SftpProgramTest, LeavesAServerThatStoppedAnsweringAtTheSecondInterrupt) {
    user.write("card/DCIM/100BILDK/IMG_0004.JPG", std::string(3'000'000, 'y'));
    server->connection().stallAll({1'000'000, unlimited});
    RunningProgram program(call(import()));
    server->connection().waitUntilStalled();
    program.send(SIGINT);
    program.send(SIGTERM);
    const auto result = program.finish();
    EXPECT_FALSE(result.hung);
    EXPECT_EQ(result.exitStatus, 130) << result.err;
    // No client is left that would keep its connection.
    server->connection().finished();
    expectNothingStaged();

    server->connection().behave();
    EXPECT_EQ(run(import()).exitStatus, 0);
    card["IMG_0004.JPG"] = std::string(3'000'000, 'y');
    EXPECT_TRUE(tree(server->path("fotos")) == card);
}

TEST_F(SftpProgramTest, LeavesAServerThatNeverAnswersAtTheFirstInterrupt) {
    server->connection().stallAll({0, 0});
    RunningProgram program(call(plan()));
    server->connection().waitUntilStalled();
    program.send(SIGINT);
    const auto result = program.finish();
    EXPECT_FALSE(result.hung);
    EXPECT_EQ(result.exitStatus, 130) << result.err;
    server->connection().finished();
}

TEST_F(SftpProgramTest, ProvesThatACardIsOnTheServer) {
    const Strings verify{"verify", "--card", user.path("card"), "--to", address(), "--content"};
    ASSERT_EQ(run(import()).exitStatus, 0);
    const Tree there = tree(server->path(""));
    const auto equal = run(verify);
    EXPECT_EQ(equal.exitStatus, 0) << equal.out << equal.err;
    EXPECT_EQ(equal.out, "✓ Alle 3 Dateien (100 KB) sind am Ziel, Byte für Byte gleich.\n");
    EXPECT_EQ(tree(server->path("")), there);

    std::ofstream(server->path("fotos/IMG_0002.JPG")) << "the seconD";
    fs::remove(server->path("fotos/IMG_0001.JPG"));
    const auto different = run(verify);
    EXPECT_EQ(different.exitStatus, 1) << different.err;
    EXPECT_EQ(different.out,
              "✗ IMG_0001.JPG  (3 Byte): fehlt am Ziel\n"
              "✗ IMG_0002.JPG  (10 Byte): Zwilling: Was am Ziel so heißt und so groß ist, hat "
              "anderen Inhalt\n"
              "✗ Nicht löschen: am Ziel 1 von 3 Dateien (100 KB), 1 fehlt, 1 mit anderem "
              "Inhalt.\n");
    expectNothingStaged();

    auto words = import();
    words.emplace_back("--verify");
    const auto loaded = run(words);
    EXPECT_EQ(loaded.exitStatus, 0) << loaded.out << loaded.err;
    EXPECT_TRUE(
        loaded.out.ends_with("✓ Die eine geladene Datei (3 Byte) ist am Ziel, Byte für Byte "
                             "gleich. Die ganze Karte prüft verify --content.\n"))
        << loaded.out;

    server->changeHostKey();
    EXPECT_EQ(run(verify).exitStatus, 4);
}

TEST_F(SftpProgramTest, LeavesNoCopiesWhereAProofIsInterrupted) {
    const std::string name = "card/DCIM/100BILDK/IMG_0004.JPG";
    user.write(name, std::string(3'000'000, 'y'));
    ASSERT_EQ(run(import()).exitStatus, 0);
    server->connection().finished();
    // The listing passes, the download does not.
    server->connection().stallAll({unlimited, 1'000'000});
    RunningProgram program(
        call({"verify", "--card", user.path("card"), "--to", address(), "--content"}));
    server->connection().waitUntilStalled();
    const auto isCopy = [](const auto& each) { return each.first.contains("/verify/ziel-"); };
    EXPECT_TRUE(std::ranges::any_of(tree(user.path("cache")), isCopy));
    program.send(SIGINT);
    const auto result = program.finish();
    EXPECT_FALSE(result.hung);
    EXPECT_EQ(result.exitStatus, 130) << result.err;
    server->connection().finished();
    expectNothingStaged();
}

}  // namespace
}  // namespace bildkurier
