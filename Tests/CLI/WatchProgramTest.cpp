// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportOutput.h"
#include "MountedImage.h"
#include "ProgramTest.h"
#include "RunningProgram.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <optional>
#include <stdexcept>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

/// Runs `bildkurier-cli watch` over a card whose second file is large.
class WatchProgramTest : public ProgramTest {
protected:
    static constexpr std::size_t largeSize = 200U << 20U;
    static constexpr auto large = "IMG_2.MP4";

    WatchProgramTest() { fs::create_directory(destination); }

    void fillCard() const {
        addLarge("IMG_1.JPG", 5'000, 1);
        addHollow(large, largeSize, 2);
        addLarge("IMG_3.JPG", 5'000, 3);
    }

    ProgramCall watch(Strings options, const Environment& environment,
                      const TemporaryFolder& whose) const {
        options.insert(options.begin(), {"watch", "--to", destination});
        ProgramCall program = call(options, environment, whose);
        program.deadline = std::chrono::minutes(2);
        return program;
    }
    /// The same for the user of this test.
    ProgramCall watch(const Strings& options) const { return watch(options, {}, user); }

    /// The number of a call that writes the middle of the large file at the destination when
    /// somebody watches with these options.
    long callInTheMiddle(const Strings& options) const {
        const std::string log = folder.path("calls.log");
        const TemporaryFolder another;
        RunningProgram program(watch(options, watching(destination, log), another));
        EXPECT_TRUE(program.waitUntilItSays("Fertig: 3 geladen")) << program.out();
        program.send(SIGTERM);
        EXPECT_EQ(program.finish().exitStatus, 130);
        std::vector<long> writes;
        for (const auto& call : readCallLog(log)) {
            if (call.name == "write" && call.path.ends_with(large)) writes.push_back(call.number);
        }
        fs::remove_all(destination);
        fs::create_directory(destination);
        return writes.at(writes.size() / 2);
    }

    /// A watch that stops in the middle of the large file.
    ProgramCall stoppingWatch(const Strings& options) const {
        auto environment = watching(destination, folder.path("stopped.log"));
        environment["FAULTS_STOP_AT"] = std::to_string(callInTheMiddle(options));
        return watch(options, environment, user);
    }

    void expectToBeInTheMiddle() const {
        const auto size = fs::file_size(destination + "/.bildkurier-tmp/" + large);
        EXPECT_GT(size, 0U);
        EXPECT_LT(size, largeSize);
    }

    /// Whether the whole card is at the destination, and nothing else.
    void expectCardAtDestination() const {
        const Tree found = tree(destination);
        EXPECT_TRUE(visibleFiles(found) == visibleFiles(tree(card)));
        EXPECT_FALSE(hasHidden(found));
    }

    const TemporaryFolder user;
};

/// The card is a folder, which takes no rights.
class WatchedFolderTest : public WatchProgramTest {
protected:
    void SetUp() override {
        needFaults();
        fillCard();
    }

    const Strings options{"--card", card, "--trust", "card"};
};

TEST_F(WatchedFolderTest, EndsAfterTheFileInHand) {
    RunningProgram program(stoppingWatch(options));
    ASSERT_TRUE(program.waitUntilStopped()) << program.out();
    expectToBeInTheMiddle();
    program.send(SIGTERM);
    program.send(SIGCONT);
    const auto result = program.finish();
    EXPECT_EQ(result.exitStatus, 130);
    const ImportOutput output(result.out);
    EXPECT_EQ(output.saved, (Strings{"JPG/IMG_1.JPG", "MP4/IMG_2.MP4"})) << result.out;
    const Tree found = tree(destination);
    Tree wanted = visibleFiles(tree(card));
    wanted.erase("IMG_3.JPG");
    EXPECT_TRUE(visibleFiles(found) == wanted);
    EXPECT_FALSE(hasHidden(found));
}

TEST_F(WatchedFolderTest, KeepsOtherImportsFromStartingForAsLongAsItLives) {
    RunningProgram program(stoppingWatch(options));
    ASSERT_TRUE(program.waitUntilStopped()) << program.out();
    expectToBeInTheMiddle();
    const auto import = call({"import", "--card", card, "--to", destination}, {}, user);
    const Tree before = tree(destination);
    const auto refused = import.run();
    EXPECT_EQ(refused.exitStatus, 4);
    EXPECT_EQ(refused.err, "Es läuft schon ein Import.\n");
    EXPECT_EQ(refused.out, "");
    EXPECT_TRUE(tree(destination) == before);

    program.send(SIGKILL);
    EXPECT_EQ(program.finish().signal, SIGKILL);
    const auto allowed = import.run();
    EXPECT_EQ(allowed.exitStatus, 0) << allowed.err;
    EXPECT_EQ(ImportOutput(allowed.out).saved, (Strings{"MP4/IMG_2.MP4", "JPG/IMG_3.JPG"}));
    expectCardAtDestination();
}

TEST_F(WatchedFolderTest, IsImportedAgainWheneverItReturns) {
    RunningProgram program(watch(options));
    ASSERT_TRUE(program.waitUntilItSays("Fertig: 3 geladen")) << program.out();
    const std::string away = folder.path("away");
    fs::rename(card, away);
    ASSERT_TRUE(program.waitUntilItSays("Suche Kamera")) << program.out();
    folder.write("away/IMG_4.JPG", "four");
    fs::rename(away, card);
    ASSERT_TRUE(program.waitUntilItSays("Fertig: 1 geladen")) << program.out();
    program.send(SIGTERM);
    EXPECT_EQ(program.finish().exitStatus, 130);
    expectCardAtDestination();
}

TEST_F(WatchedFolderTest, IsImportedAsSoonAsItIsThere) {
    const std::string away = folder.path("away");
    fs::rename(card, away);
    RunningProgram program(watch(options));
    ASSERT_TRUE(program.waitUntilItSays("Der Ordner „" + card + "“ ist noch nicht da"))
        << program.out();
    fs::rename(away, card);
    ASSERT_TRUE(program.waitUntilItSays("Fertig: 3 geladen")) << program.out();
    program.send(SIGTERM);
    EXPECT_EQ(program.finish().exitStatus, 130);
    expectCardAtDestination();
}

TEST_F(WatchedFolderTest, IsTrustedOnlyOnceItIsNotEmpty) {
    const std::string empty = folder.makeFolder("leer");
    const auto plan = call({"plan", "--card", empty, "--to", destination}, {}, user).run();
    EXPECT_EQ(plan.out, "Die Kamera meldet keine Dateien.\n");
    EXPECT_EQ(plan.exitStatus, 0);

    RunningProgram program(watch({"--card", empty, "--trust", "leer"}));
    ASSERT_TRUE(program.waitUntilItSays("Die Kamera meldet keine Dateien.")) << program.out();
    EXPECT_NE(program.out().find("der angegebene Ordner ist leer"), std::string::npos)
        << program.out();
    const auto trusted = call({"settings", "autoImportEnabled"}, {}, user);
    EXPECT_EQ(trusted.run().out, "autoImportEnabled = false\n");
    fs::rename(card, empty);
    card = empty;
    ASSERT_TRUE(program.waitUntilItSays("Fertig: 3 geladen")) << program.out();
    EXPECT_EQ(trusted.run().out, "autoImportEnabled = true\n");
    program.send(SIGTERM);
    EXPECT_EQ(program.finish().exitStatus, 130);
    expectCardAtDestination();
}

/// The card is a volume that is mounted and unmounted.
class WatchedVolumeTest : public WatchProgramTest {
protected:
    static constexpr auto label = "BKTEST";

    void SetUp() override {
        try {
            constexpr std::uint64_t room = 2 * largeSize;
            volume.emplace(label, room);
        } catch (const std::runtime_error&) {
            GTEST_SKIP() << "a volume of its own takes root, mkfs.ext4 and a loop device";
        }
        card = volume->point();
    }

    const Strings options{"--trust", label};
    std::optional<MountedImage> volume;
};

TEST_F(WatchedVolumeTest, IsImportedFromThenOnWheneverItIsMounted) {
    addLarge("IMG_1.JPG", 5'000, 1);
    ASSERT_TRUE(volume->unmount());
    RunningProgram trusting(watch(options));
    ASSERT_TRUE(trusting.waitUntilItSays("Suche Kamera")) << trusting.out();
    volume->mount();
    ASSERT_TRUE(trusting.waitUntilItSays("Fertig: 1 geladen")) << trusting.out();
    expectCardAtDestination();
    trusting.send(SIGTERM);
    EXPECT_EQ(trusting.finish().exitStatus, 130);

    addLarge("IMG_2.JPG", 5'000, 2);
    RunningProgram later(watch({}));
    ASSERT_TRUE(later.waitUntilItSays("Fertig: 1 geladen")) << later.out();
    expectCardAtDestination();
    later.send(SIGTERM);
    const auto result = later.finish();
    EXPECT_EQ(result.exitStatus, 130);
    EXPECT_EQ(ImportOutput(result.out).saved, Strings{"JPG/IMG_2.JPG"}) << result.out;
}

TEST_F(WatchedVolumeTest, IsTrustedByTheNameOfItsEmptyMountPoint) {
    const std::string name = fs::path(card).filename();
    volume.emplace(name);
    card = volume->point();
    addLarge("IMG_1.JPG", 5'000, 1);
    ASSERT_TRUE(volume->unmount());
    const Strings mountPoint{"--card", card, "--trust", name};
    RunningProgram program(watch(mountPoint));
    ASSERT_TRUE(program.waitUntilItSays("Die Kamera meldet keine Dateien.")) << program.out();
    volume->mount();
    ASSERT_TRUE(program.waitUntilItSays("Fertig: 1 geladen")) << program.out();
    program.send(SIGTERM);
    EXPECT_EQ(program.finish().exitStatus, 130);
    expectCardAtDestination();
}

TEST_F(WatchedVolumeTest, GoesOnWhenItIsBackAfterBeingPulledInTheMiddleOfAFile) {
    needFaults();
    if (IsSkipped()) return;
    fillCard();
    RunningProgram program(stoppingWatch(options));
    ASSERT_TRUE(program.waitUntilStopped()) << program.out();
    expectToBeInTheMiddle();
    volume->pull();
    program.send(SIGCONT);
    ASSERT_TRUE(program.waitUntilItSays("Kamera getrennt. Der Import geht weiter"))
        << program.out();
    EXPECT_EQ(ImportOutput(program.out()).saved, Strings{"JPG/IMG_1.JPG"});
    volume->mount();
    ASSERT_TRUE(program.waitUntilItSays("Fertig: 2 geladen")) << program.out();
    program.send(SIGTERM);
    const auto result = program.finish();
    EXPECT_EQ(result.exitStatus, 130);
    EXPECT_EQ(ImportOutput(result.out).saved,
              (Strings{"JPG/IMG_1.JPG", "MP4/IMG_2.MP4", "JPG/IMG_3.JPG"}))
        << result.out;
    expectCardAtDestination();
}

}  // namespace
}  // namespace bildkurier
