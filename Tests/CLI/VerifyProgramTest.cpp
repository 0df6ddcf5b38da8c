// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardLikeVolume.h"
#include "PrivateMounts.h"
#include "ProgramTest.h"
#include "RunningProgram.h"

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <sstream>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

/// Proves a card with the real command line.
class VerifyProgramTest : public ProgramTest {
protected:
    ProgramResult verify(const Strings& options = {}) const {
        Strings words{"verify", "--card", card, "--to", destination};
        words.insert(words.end(), options.begin(), options.end());
        return run(words);
    }
    ProgramResult verifyContent() const { return verify({"--content"}); }

    /// Everything that could tell of a change on either side but the bytes, by path.
    std::map<std::string, std::string> traces() const {
        std::map<std::string, std::string> found;
        for (const auto& side : {card, destination}) {
            note(side, found);
            if (!fs::exists(side)) continue;
            for (const auto& entry : fs::recursive_directory_iterator(side))
                note(entry.path(), found);
        }
        return found;
    }

    /// Takes root's right to read everything from a program that is to be called.
    static void bindByPermissions(ProgramCall& call) {
        call.arguments.insert(call.arguments.begin(),
                              {"--bounding-set=-dac_override,-dac_read_search", call.path});
        call.path = "/usr/bin/setpriv";
    }

    static Json lastLine(const ProgramResult& result) {
        const auto end = result.out.find_last_not_of('\n');
        const auto begin = result.out.rfind('\n', end);
        return Json::parse(result.out.substr(begin == std::string::npos ? 0 : begin + 1));
    }

    static void change(const std::string& path, std::size_t at) {
        std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
        file.seekg(static_cast<std::streamoff>(at));
        const char old = static_cast<char>(file.get());
        file.seekp(static_cast<std::streamoff>(at));
        file.put(static_cast<char>(old ^ 1));
    }

private:
    static void note(const std::string& path, std::map<std::string, std::string>& found) {
        struct stat facts{};
        if (::lstat(path.c_str(), &facts) != 0) return;
        found[path] = fmt::format("{} {} {} {}.{} {}.{}", facts.st_ino, facts.st_mode,
                                  facts.st_size, facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec,
                                  facts.st_ctim.tv_sec, facts.st_ctim.tv_nsec);
    }
};

TEST_F(VerifyProgramTest, FindsEveryDifferenceInALargeTreeAndNoOther) {
    std::minstd_rand random(20240701);
    std::vector<std::string> names;
    for (int n = 0; n < 2'000; ++n) {
        names.push_back(fmt::format("IMG_{:04}.JPG", n));
        addLarge(names.back(), 1'000 + random() % 9'000);
    }
    fs::create_directory(destination);
    fs::copy(fs::path(picture("x")).parent_path(), destination + "/JPG");
    auto before = traces();
    const auto equal = verifyContent();
    EXPECT_EQ(equal.exitStatus, 0) << equal.out << equal.err;
    EXPECT_TRUE(equal.out.contains("✓ Alle 2000 Dateien (")) << equal.out;
    EXPECT_TRUE(equal.out.ends_with(") sind am Ziel, Byte für Byte gleich.\n")) << equal.out;
    EXPECT_EQ(traces(), before);

    std::ranges::shuffle(names, random);
    std::set<std::string> twins;
    std::set<std::string> missing;
    for (std::size_t n = 0; n < 200; ++n) {
        const std::string path = destination + "/JPG/" + names[n];
        const auto size = fs::file_size(path);
        switch (n % 4) {
            case 0:  // one byte
            case 1:
                change(path, random() % size);
                twins.insert(names[n]);
                break;
            case 2:
                fs::resize_file(path, random() % size);
                missing.insert(names[n]);
                break;
            default:
                if (n % 8 == 3) {
                    fs::remove(path);
                    missing.insert(names[n]);
                } else {  // another picture of the same name and size
                    std::ofstream(path, std::ios::binary) << std::string(size, 'z');
                    twins.insert(names[n]);
                }
        }
    }
    before = traces();
    const auto result = verify({"--content", "--json"});
    EXPECT_EQ(result.exitStatus, 1) << result.err;
    std::map<std::string, std::set<std::string>> found;
    std::istringstream lines(result.out);
    for (std::string line; std::getline(lines, line);) {
        const auto event = Json::parse(line);
        if (event["event"] == "finding") found[event["kind"]].insert(event["name"]);
    }
    EXPECT_EQ(found["twin"], twins);
    EXPECT_EQ(found["missing"], missing);
    EXPECT_EQ(found["unproved"], std::set<std::string>{});
    EXPECT_EQ(lastLine(result)["present"], 1'800);
    EXPECT_EQ(lastLine(result)["complete"], false);
    EXPECT_EQ(traces(), before);

    // By names and sizes alone, twins count as present.
    const auto byKey = verify({"--json"});
    EXPECT_EQ(byKey.exitStatus, 1);
    EXPECT_EQ(lastLine(byKey)["missing"], missing.size());
    EXPECT_EQ(lastLine(byKey)["twins"], 0);
}

TEST_F(VerifyProgramTest, TellsOfEachFileAndClosesInOneSentence) {
    for (const std::string name : {"IMG_1.JPG", "IMG_2.JPG", "IMG_3.JPG"}) addLarge(name, 2'000);
    ASSERT_EQ(import().exitStatus, 0);
    change(destination + "/JPG/IMG_1.JPG", 1'234);
    fs::remove(destination + "/JPG/IMG_2.JPG");
    const auto result = verifyContent();
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.err, "");
    EXPECT_TRUE(result.out.ends_with(
        "✗ IMG_1.JPG  (2 KB): Zwilling: Was am Ziel so heißt und so groß ist, hat anderen "
        "Inhalt\n"
        "✗ IMG_2.JPG  (2 KB): fehlt am Ziel\n"
        "✗ Nicht löschen: am Ziel 1 von 3 Dateien (6 KB), 1 fehlt, 1 mit anderem "
        "Inhalt.\n"))
        << result.out;
}

TEST_F(VerifyProgramTest, TellsWhatElseIsOnTheCard) {
    addLarge("IMG_1.JPG", 2'000);
    addLarge("INDEX.CTG", 10);
    ASSERT_EQ(import().exitStatus, 0);
    const auto there = "✓ Die eine Datei (2 KB) ist am Ziel, Byte für Byte gleich.\n";
    EXPECT_FALSE(verifyContent().out.contains("Nicht geprüft"));
    for (const std::string name : {"IMG_1.CR4", "IMG_2.cr4", "NOTIZ.PDF", ".alt/IMG_3.JPG"})
        addLarge(name, 2'000);
    const auto told = verifyContent();
    EXPECT_EQ(told.exitStatus, 0);
    const std::string line =
        "ℹ︎ Nicht geprüft: 3 Dateien anderer Art (CR4, PDF), Verstecktes (.alt).";
    EXPECT_TRUE(told.out.ends_with(line + "\n" + there)) << told.out;
    const auto forPrograms = verify({"--content", "--json"});
    EXPECT_EQ(forPrograms.exitStatus, 0);
    EXPECT_TRUE(forPrograms.out.contains(Json{{"event", "log"}, {"line", line}}.dump()))
        << forPrograms.out;
    EXPECT_EQ(lastLine(forPrograms)["others"], 4);
    EXPECT_EQ(lastLine(forPrograms)["files"], 1);
    EXPECT_EQ(lastLine(forPrograms)["complete"], true);
}

TEST_F(VerifyProgramTest, SaysThatCardAndDestinationLieOnOneVolume) {
    addLarge("IMG_1.JPG", 2'000);
    const auto imported = import({"--verify"});
    const auto verified = verify();
    EXPECT_EQ(verified.exitStatus, 0);
    const auto caution = "ℹ︎ Karte und Ziel liegen auf demselben Datenträger.\n";
    EXPECT_TRUE(verified.out.contains(caution)) << verified.out;
    EXPECT_FALSE(imported.out.contains(caution)) << imported.out;
}

TEST_F(VerifyProgramTest, FindsWhatWasLoadedUnderAFreeName) {
    addLarge("IMG_1.JPG", 2'000);
    fs::create_directories(destination + "/JPG");
    std::ofstream(destination + "/JPG/IMG_1.JPG") << "ein anderes";
    ASSERT_EQ(import({"--verify"}).exitStatus, 0);
    ASSERT_TRUE(fs::exists(destination + "/JPG/IMG_1_1.JPG"));
    EXPECT_EQ(verifyContent().exitStatus, 0);
    const auto byKey = verify();
    EXPECT_EQ(byKey.exitStatus, 1);
    EXPECT_TRUE(
        byKey.out.contains("✗ IMG_1.JPG  (2 KB): fehlt am Ziel; ob sie dort mit "
                           "angehängter Nummer liegt, prüft --content\n"))
        << byKey.out;
}

TEST_F(VerifyProgramTest, TakesAFolderThatCannotBeReadForNotProved) {
    addLarge("IMG_1.JPG", 2'000);
    addLarge("geheim/IMG_2.JPG", 2'000);
    ASSERT_EQ(import().exitStatus, 0);
    fs::permissions(picture("geheim"), fs::perms::none);
    const TemporaryFolder user;
    ProgramCall verification =
        call({"verify", "--content", "--card", card, "--to", destination}, {}, user);
    if (::geteuid() == 0) bindByPermissions(verification);
    const auto result = verification.run();
    fs::permissions(picture("geheim"), fs::perms::owner_all);
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.out.contains("nicht prüfbar: Ordner ")) << result.out;
}

TEST_F(VerifyProgramTest, MakesNoDestination) {
    addLarge("IMG_1.JPG", 2'000);
    for (const Strings& options : {Strings{}, Strings{"--content"}}) {
        const auto before = traces();
        EXPECT_EQ(verify(options).exitStatus, 1);
        EXPECT_EQ(traces(), before);
        EXPECT_FALSE(fs::exists(destination));
    }
}

TEST_F(VerifyProgramTest, RefusesWhatMakesNoSense) {
    addLarge("IMG_1.JPG", 2'000);
    const auto inside = run({"verify", "--card", card, "--to", card + "/DCIM"});
    EXPECT_EQ(inside.exitStatus, 4);
    EXPECT_EQ(inside.err,
              "Karte und Zielordner liegen ineinander; bitte einen anderen Zielordner wählen.\n");
    EXPECT_EQ(run({"verify", "--card", card + "/nichts", "--to", destination}).exitStatus, 3);
    EXPECT_EQ(run({"verify", "--card", card, "--camera", "X", "--to", destination}).exitStatus, 3);
    EXPECT_EQ(verify({"--verify"}).exitStatus, 2);
    std::ofstream(folder.path("datei")) << "x";
    EXPECT_EQ(run({"verify", "--card", card, "--to", folder.path("datei")}).exitStatus, 4);
}

TEST_F(VerifyProgramTest, TakesSeveralCards) {
    addLarge("IMG_1.JPG", 2'000);
    const std::string other = folder.makeFolder("other");
    std::ofstream(other + "/IMG_9.JPG") << "neun";
    ASSERT_EQ(import().exitStatus, 0);
    const auto result = verify({"--card", other});
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_TRUE(result.out.contains("✓ Die eine Datei (2 KB) ist dem Namen")) << result.out;
    EXPECT_TRUE(result.out.contains("✗ IMG_9.JPG  (4 Byte): fehlt am Ziel\n")) << result.out;
}

TEST_F(VerifyProgramTest, ProvesWhatAnImportHasLoaded) {
    addLarge("IMG_1.JPG", 2'000);
    addLarge("IMG_2.JPG", 3'000);
    const auto first = import({"--verify"});
    EXPECT_EQ(first.exitStatus, 0);
    EXPECT_TRUE(
        first.out.ends_with("✓ Alle 2 geladenen Dateien (5 KB) sind am Ziel, Byte für Byte "
                            "gleich. Die ganze Karte prüft verify --content.\n"))
        << first.out;
    addLarge("IMG_3.JPG", 4'000);
    // What was loaded earlier is not asked for.
    change(destination + "/JPG/IMG_1.JPG", 100);
    const auto second = import({"--verify", "--json"});
    EXPECT_EQ(second.exitStatus, 0) << second.out;
    EXPECT_EQ(lastLine(second)["event"], "verified");
    EXPECT_EQ(lastLine(second)["files"], 1);
    EXPECT_EQ(lastLine(second)["wholeCard"], false);
    EXPECT_EQ(lastLine(second)["others"], 0);
    // A twin of a file that was loaded was not loaded itself.
    addLarge("IMG_4.JPG", 3'500);
    addLarge("sub/IMG_4.JPG", 3'500);
    const auto third = import({"--verify"});
    EXPECT_EQ(third.exitStatus, 1) << third.out;
    EXPECT_TRUE(third.out.contains("✗ IMG_4.JPG  (4 KB): Zwilling")) << third.out;
}

TEST_F(VerifyProgramTest, ProvesNothingOfACardToWhichAFileComesMeanwhile) {
    add("IMG_1.MP4", "eins");
    fs::create_directory(destination);
    if (!mountPrivately()) GTEST_SKIP() << "mounting takes root";
    CardLikeVolume slow(destination, fs::path(picture("x")).parent_path());
    if (!slow.isMounted()) GTEST_SKIP() << "takes file systems in user space";
    const TemporaryFolder user;
    for (const bool isAdded : {false, true}) {
        slow.gate().closeAt(0);
        RunningProgram running(
            call({"verify", "--card", card, "--to", destination, "--content", "--json"}, {}, user));
        EXPECT_TRUE(running.waitUntilItSays("\"comparing\""));
        if (isAdded) std::ofstream(card + "/IMG_2.MP4") << "zwei";
        slow.gate().open();
        const auto result = running.finish();
        EXPECT_EQ(result.exitStatus, isAdded ? 1 : 0) << result.out << result.err;
        EXPECT_EQ(lastLine(result)["present"], 1);
        EXPECT_EQ(lastLine(result)["complete"], !isAdded);
    }
}

TEST_F(VerifyProgramTest, ReadsNoOtherDestinationInPlaceOfTheOneThatItHasListed) {
    add("backing/IMG_1.MP4", "eins", 1);
    add("backing/IMG_2.MP4", "zwei", 2);
    const std::string others = fs::path(picture("backing/x")).parent_path();
    fs::copy(others, destination);
    change(destination + "/IMG_2.MP4", 2);
    if (!mountPrivately()) GTEST_SKIP() << "mounting takes root";
    const std::string slowCard = folder.makeFolder("slow");
    CardLikeVolume slow(slowCard, others);
    if (!slow.isMounted()) GTEST_SKIP() << "takes file systems in user space";
    slow.gate().closeAt(0);
    const TemporaryFolder user;
    RunningProgram running(
        call({"verify", "--card", slowCard, "--to", destination, "--content", "--json"}, {}, user));
    EXPECT_TRUE(running.waitUntilItSays("\"comparing\""));
    fs::rename(destination, folder.path("lost"));
    fs::copy(others, destination);
    slow.gate().open();
    const auto result = running.finish();
    EXPECT_EQ(result.exitStatus, 1) << result.err;
    EXPECT_EQ(lastLine(result)["complete"], false);
    EXPECT_TRUE(
        result.out.contains("IMG_2.MP4  (4 Byte): nicht prüfbar: am Ziel nicht lesbar: Die "
                            "Datei oder der Ordner wurde unterwegs ausgetauscht"))
        << result.out;
}

TEST_F(VerifyProgramTest, EndsWithCtrlCAndLeavesNothing) {
    constexpr std::size_t size = 3'000'000'000U;
    fs::create_directory(destination);
    for (int n = 0; n < 8; ++n) {
        const auto name = fmt::format("IMG_{}.MP4", n);
        addLarge(name, 5'000);
        fs::copy_file(picture(name), destination + "/" + name);
        addHollow(name, size);
        fs::resize_file(destination + "/" + name, size);
    }
    const TemporaryFolder user;
    const auto before = traces();
    RunningProgram running(
        call({"verify", "--card", card, "--to", destination, "--content", "--json"}, {}, user));
    ASSERT_TRUE(running.waitUntilItSays("\"progress\""));
    running.send(SIGINT);
    const auto result = running.finish();
    EXPECT_EQ(result.exitStatus, 130) << result.err;
    EXPECT_FALSE(result.out.contains("verified"));
    EXPECT_EQ(traces(), before);
    for (const auto& [path, contents] : tree(user.path()))
        EXPECT_FALSE(path.contains("verify")) << path;
}

}  // namespace
}  // namespace bildkurier
