// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramTest.h"

#include <filesystem>

namespace bildkurier {
namespace {

class OutputTest : public ProgramTest {
protected:
    /// What comes of an import whose standard output goes to `target`, a word for the shell. What
    /// goes to &4 is read by nobody any more.
    ProgramResult importInto(const std::string& target) const {
        const TemporaryFolder user;
        const std::string withoutReader = R"(mkfifo "$0"; exec 3<>"$0" 4>"$0" 3<&-; exec "$@" )";
        ProgramCall program = call({"-c", withoutReader + target, user.path("pipe"), BILDKURIER_CLI,
                                    "import", "--card", card, "--to", destination},
                                   {}, user);
        program.path = "/bin/sh";
        return program.run();
    }
};

TEST_F(OutputTest, ThatIsLostMakesNoSuccess) {
    add("IMG_1.JPG", "one");
    const auto result = importInto(">/dev/full");
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_EQ(result.err, "Die Ausgabe ließ sich nicht vollständig schreiben.\n");
    EXPECT_TRUE(visibleFiles(tree(destination)) == visibleFiles(tree(card)));
}

TEST_F(OutputTest, ThatNobodyWantsIsASuccess) {
    add("IMG_1.JPG", "one");
    for (const char* target : {">/dev/null", ">&4"}) {
        const auto result = importInto(target);
        EXPECT_EQ(result.exitStatus, 0) << target;
        EXPECT_EQ(result.err, "") << target;
        EXPECT_TRUE(visibleFiles(tree(destination)) == visibleFiles(tree(card))) << target;
        std::filesystem::remove_all(destination);
    }
}

TEST_F(OutputTest, ThatNobodyReadsHidesNoFailure) {
    add("IMG_1.JPG", "one");
    folder.write("destination", "no folder");
    EXPECT_EQ(importInto(">&4").exitStatus, 4);
}

}  // namespace
}  // namespace bildkurier
