// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportLock.h"
#include "ProgramTest.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

class OneImportTest : public ProgramTest {
protected:
    const Environment environment{{"XDG_RUNTIME_DIR", folder.makeFolder("runtime")}};
    const std::string lockFile = folder.path("runtime/bildkurier/import.lock");
};

TEST_F(OneImportTest, RunsAtATimeAndTheOtherTouchesNothing) {
    add("IMG_1.JPG", "one");
    folder.write("destination/.bildkurier-tmp/IMG_1.JPG", "half");
    ImportLock lock({lockFile});
    ASSERT_TRUE(lock.acquire());
    const Tree before = tree(destination);
    const auto result = import({}, environment);
    EXPECT_EQ(result.exitStatus, 4);
    EXPECT_EQ(result.err, "Es läuft schon ein Import.\n");
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(tree(destination), before);

    lock.release();
    EXPECT_EQ(import({}, environment).exitStatus, 0);
    EXPECT_EQ(tree(destination), (Tree{{"JPG/", ""}, {"JPG/IMG_1.JPG", "one"}}));
}

TEST_F(OneImportTest, SeesTheOneOfAnotherSession) {
    add("IMG_1.JPG", "one");
    const std::string caches = folder.makeFolder("caches");
    ImportLock lock({caches + "/local.quarzfeld.bildkurier/import.lock"});
    ASSERT_TRUE(lock.acquire());
    Environment shell = environment;
    shell["XDG_CACHE_HOME"] = caches;
    const auto result = import({}, shell);
    EXPECT_EQ(result.exitStatus, 4);
    EXPECT_EQ(result.err, "Es läuft schon ein Import.\n");
    lock.release();
    EXPECT_EQ(import({}, shell).exitStatus, 0);
}

TEST_F(OneImportTest, KeepsNobodyFromPlanning) {
    add("IMG_1.JPG", "one");
    ImportLock lock({lockFile});
    ASSERT_TRUE(lock.acquire());
    EXPECT_EQ(run({"plan", "--card", card, "--to", destination}, environment).exitStatus, 0);
    EXPECT_EQ(run({"cameras", "--card", card}, environment).exitStatus, 0);
}

}  // namespace
}  // namespace bildkurier
