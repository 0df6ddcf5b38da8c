// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramTest.h"

namespace bildkurier {
namespace {

class OutputTest : public ProgramTest {
protected:
    /// What comes of an import whose standard output goes to `target`, a word for the shell.
    ProgramResult importInto(const std::string& target) const {
        const TemporaryFolder user;
        ProgramCall program = call({"-c", R"(exec "$@" )" + target, "sh", BILDKURIER_CLI, "import",
                                    "--card", card, "--to", destination},
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
    const auto result = importInto(">/dev/null");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.err, "");
}

}  // namespace
}  // namespace bildkurier
