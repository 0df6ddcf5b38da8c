// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramTest.h"

namespace bildkurier {
namespace {

/// The program in what others have left of its process.
class SurroundingsTest : public ProgramTest {
protected:
    /// `before` and `redirections` are for the shell that starts it.
    static ProgramResult runIn(const std::string& before, const std::string& redirections,
                               const Strings& words) {
        const TemporaryFolder user;
        const Environment environment{{"XDG_DATA_HOME", user.path("data")}};
        ProgramCall program =
            call({"-c", before + R"(exec "$@" )" + redirections, "sh", BILDKURIER_CLI}, environment,
                 user);
        program.arguments.insert(program.arguments.end(), words.begin(), words.end());
        program.path = "/bin/sh";
        return program.run();
    }
};

TEST_F(SurroundingsTest, ThatLackStandardStreamsDoNoHarm) {
    for (int minute = 0; minute < 3; ++minute)
        add("IMG_" + std::to_string(minute) + ".JPG", "picture " + std::to_string(minute), minute);
    int call = 0;
    for (const std::string closed : {"<&-", ">&-", "2>&-", "<&- >&-", ">&- 2>&-", "<&- >&- 2>&-"}) {
        const std::string target = destination + std::to_string(++call);
        const auto result = runIn("", closed, {"import", "--card", card, "--to", target});
        EXPECT_EQ(result.exitStatus, 0) << closed << '\n' << result.err;
        EXPECT_TRUE(visibleFiles(tree(target)) == visibleFiles(tree(card))) << closed;
        EXPECT_EQ(result.out.contains("IMG_2.JPG"), !closed.contains(" >") && closed[0] != '>')
            << closed << '\n'
            << result.out;
    }
}

TEST_F(SurroundingsTest, ThatIgnoreTheEndOfChildrenDoNoHarm) {
    const auto result = runIn("trap '' CHLD; ", "", {"key", "generate"});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.out,
              "Neuer Schlüssel erzeugt. Den öffentlichen Schlüssel jetzt beim Server eintragen.\n");
}

}  // namespace
}  // namespace bildkurier
