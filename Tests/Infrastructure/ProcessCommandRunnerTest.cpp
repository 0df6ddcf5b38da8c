// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EnvironmentVariable.h"
#include "ProcessCommandRunner.h"
#include "TemporaryFolder.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <regex>
#include <string>
#include <thread>
#include <vector>

namespace bildkurier {
namespace {

const std::string shell = "/bin/sh";

CommandResult sh(const std::string& script, const std::optional<std::string>& input = {}) {
    return ProcessCommandRunner().run(shell, {"-c", script}, input);
}

TEST(ProcessCommandRunner, HandsOutTheExitStatus) {
    EXPECT_EQ(sh("exit 0").status, 0);
    EXPECT_EQ(sh("exit 7").status, 7);
    EXPECT_EQ(sh("exit 255").status, 255);
}

TEST(ProcessCommandRunner, HandsOutTheSignalThatEndedTheChild) {
    EXPECT_EQ(sh("echo before; kill -TERM $$"), (CommandResult{SIGTERM, "before"}));
    EXPECT_EQ(sh("kill -KILL $$").status, SIGKILL);
}

TEST(ProcessCommandRunner, HearsStandardErrorAlone) {
    EXPECT_EQ(sh("echo complaint >&2; exit 3"), (CommandResult{3, "complaint"}));
}

TEST(ProcessCommandRunner, KeepsTheOrderOfBothStreams) {
    EXPECT_EQ(sh("echo 1; echo 2 >&2; echo 3; echo 4 >&2").output, "1\n2\n3\n4");
}

TEST(ProcessCommandRunner, TrimsTheOutput) {
    EXPECT_EQ(sh("printf '  word\\n\\n'").output, "word");
    EXPECT_EQ(sh("printf '\\n a  b\\n c \\t\\r\\n'").output, "a  b\n c");
    EXPECT_EQ(sh("printf ' \\n'").output, "");
}

TEST(ProcessCommandRunner, KeepsTheBlanksThatTheLastLineEndsIn) {
    const struct {
        std::string written;
        std::string lastBlanks;
    } cases[] = {{"word", ""},
                 {"word\\n\\n", ""},
                 {"a  word \\t\\n \\n", " \t"},
                 {"word word  ", "  "},
                 {" word\\r\\n ", ""},
                 {" \\n ", ""},
                 {"x\\302\\240\\n", "\u00A0"}};
    for (const auto& [written, lastBlanks] : cases)
        EXPECT_EQ(sh("printf '" + written + "'").lastBlanks, lastBlanks) << written;
}

TEST(ProcessCommandRunner, HasNoOutputThatIsNotUtf8) {
    EXPECT_EQ(sh("printf 'ok \\303\\234'").output, "ok Ü");
    EXPECT_EQ(sh("printf 'not ok \\377'; exit 2"), (CommandResult{2, ""}));
}

TEST(ProcessCommandRunner, GivesNoInputWithoutOne) {
    EXPECT_EQ(sh("readlink /proc/self/fd/0; cat; echo end").output, "/dev/null\nend");
}

TEST(ProcessCommandRunner, ClosesAnEmptyInput) { EXPECT_EQ(sh("cat; echo end", "").output, "end"); }

TEST(ProcessCommandRunner, FeedsTheInputAndClosesIt) {
    EXPECT_EQ(sh("cat; echo end", "put \"Übung\"\n").output, "put \"Übung\"\nend");
    EXPECT_EQ(sh("wc -c", std::string(300'000, 'x')).output, "300000");
}

TEST(ProcessCommandRunner, FeedsAndReadsAtOnce) {
    const std::string big(4'000'000, 'x');
    EXPECT_TRUE(sh("cat", big).output == big);
    EXPECT_TRUE(sh("tee /dev/stderr | tr x y >/dev/null", big).output == big);
}

TEST(ProcessCommandRunner, OutlivesAChildThatDiesWhileItIsFed) {
    const std::string big(4'000'000, 'x');
    EXPECT_EQ(sh("exec <&-; echo no; exit 4", big), (CommandResult{4, "no"}));
    EXPECT_EQ(sh("head -c 10; kill -KILL $$", big), (CommandResult{SIGKILL, "xxxxxxxxxx"}));
    sigset_t pending;
    sigpending(&pending);
    EXPECT_FALSE(sigismember(&pending, SIGPIPE));
}

TEST(ProcessCommandRunner, ReadsUntilTheLastHolderOfTheOutputIsGone) {
    EXPECT_EQ(sh("(read line; echo late) <&0 & exit 0", "go\n").output, "late");
}

TEST(ProcessCommandRunner, PassesArgumentsAsTheyAre) {
    const std::vector<std::string> odd{"%s|", "a b  c", "$HOME", "\"'`", "*",
                                       "",    "-n",     "\\",    "ü\n"};
    EXPECT_EQ(ProcessCommandRunner().run("/usr/bin/printf", odd, {}).output,
              "a b  c|$HOME|\"'`|*||-n|\\|ü\n|");
}

TEST(ProcessCommandRunner, SaysWhyAProgramCannotBeStarted) {
    const TemporaryFolder folder;
    const auto plain = folder.write("plain", "no program");
    const struct {
        std::string program;
        std::string why;
    } cases[] = {
        {"/no/such/program", "Die Datei oder der Ordner ist nicht vorhanden"},
        {plain, "Die Zugriffsrechte reichen nicht aus"},
        {folder.path(), "Die Zugriffsrechte reichen nicht aus"},
    };
    for (const auto& [program, why] : cases) {
        const CommandResult expected{-1,
                                     fmt::format("{} lässt sich nicht starten: {}", program, why)};
        EXPECT_EQ(ProcessCommandRunner().run(program, {"a"}, {}), expected);
        EXPECT_EQ(ProcessCommandRunner().run(program, {"a"}, "x"), expected);
    }
}

TEST(ProcessCommandRunner, StartsNothingWithATextThatEndsInItsMiddle) {
    const auto result =
        ProcessCommandRunner().run("/bin/echo", {std::string("a\0b", 3)}, std::nullopt);
    EXPECT_EQ(result.status, -1);
    EXPECT_TRUE(result.output.starts_with("/bin/echo lässt sich nicht starten: "));
}

TEST(ProcessCommandRunner, HandsOnTheEnvironment) {
    const EnvironmentVariable variable("BILDKURIER_TEST", "ä b");
    EXPECT_EQ(sh("echo \"$BILDKURIER_TEST\"").output, "ä b");
}

TEST(ProcessCommandRunner, HandsOnTheEnvironmentThatItWasMadeIn) {
    ProcessCommandRunner runner;
    const EnvironmentVariable variable("BILDKURIER_TEST", "later");
    EXPECT_EQ(runner.run("/bin/sh", {"-c", "echo \"$BILDKURIER_TEST\""}, {}).output, "");
}

TEST(ProcessCommandRunner, NeverLetsAProgramAsk) {
    for (const auto& before : {std::optional<std::string>(), std::optional<std::string>("force"),
                               std::optional<std::string>("")}) {
        const EnvironmentVariable variable("SSH_ASKPASS_REQUIRE", before);
        EXPECT_EQ(sh("env | grep ^SSH_ASKPASS_REQUIRE=").output, "SSH_ASKPASS_REQUIRE=never");
    }
    EXPECT_NE(sh("true </dev/tty").status, 0);
}

TEST(ProcessCommandRunner, LeaksNoDescriptor) {
    const int leaky = ::open("/dev/null", O_RDONLY);  // NOLINT(android-cloexec-open)
    ASSERT_GE(leaky, 0);
    const std::string standardStreamsAndTheListedFolder = "0\n1\n2\n3";
    for (const auto& input : {std::optional<std::string>(), std::optional<std::string>("x")}) {
        EXPECT_EQ(ProcessCommandRunner().run("/bin/ls", {"/proc/self/fd"}, input).output,
                  standardStreamsAndTheListedFolder);
    }
    ::close(leaky);
}

std::size_t openDescriptors() {
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

TEST(ProcessCommandRunner, KeepsNoDescriptorItself) {
    const auto before = openDescriptors();
    for (int n = 0; n < 20; ++n) {
        sh("cat", "text");
        sh("true", std::string(200'000, 'x'));
        ProcessCommandRunner().run("/no/such/program", {}, "text");
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(ProcessCommandRunner, ReactsToSignalsAsUsualWhateverThisProcessDoes) {
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const auto handler = ::signal(SIGPIPE, SIG_IGN);
    const auto result = sh("grep -E '^Sig(Blk|Ign)' /proc/self/status");
    ::signal(SIGPIPE, handler);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    // Signals 32 and 33 belong to the C library, which ignores them in what it spawns.
    EXPECT_TRUE(
        std::regex_match(result.output, std::regex("SigBlk:\t0{16}\nSigIgn:\t0{7}[01][08]0{7}")))
        << result.output;
}

/// A script that runs on a thread of its own until it is ended.
class EndlessScript {
public:
    /// `script` puts a line into the file "begun" when it may be ended.
    EndlessScript(ProcessCommandRunner& runner, const std::string& script) {
        const std::string begun = folder_.path("begun");
        EXPECT_EQ(::mkfifo(begun.c_str(), 0600), 0);
        thread_ = std::jthread([this, &runner, script, begun] {
            result_ = runner.run(shell, {"-c", "begun=" + begun + "\n" + script}, {});
        });
        std::string line;
        std::getline(std::ifstream(begun) >> std::ws, line);
    }

    CommandResult result() {
        thread_.join();
        return result_;
    }

private:
    TemporaryFolder folder_;
    CommandResult result_;
    std::jthread thread_;
};

TEST(ProcessCommandRunner, EndsWhatRunsAndRunsNothingAfterwards) {
    ProcessCommandRunner runner;
    EndlessScript one(runner, "echo here; echo >$begun; read x </dev/zero");
    EndlessScript other(runner, "echo >$begun; read x </dev/zero");
    runner.endAll(std::chrono::hours(1));
    EXPECT_EQ(one.result(), (CommandResult{SIGTERM, "here"}));
    EXPECT_EQ(other.result(), (CommandResult{SIGTERM, ""}));
    const auto later = runner.run("/bin/echo", {"later"}, {});
    EXPECT_EQ(later.status, -1);
    EXPECT_TRUE(later.output.starts_with("/bin/echo lässt sich nicht starten: ")) << later.output;
}

TEST(ProcessCommandRunner, EndsWhatItsProgramsStarted) {
    ProcessCommandRunner runner;
    EndlessScript script(runner, "(read x </dev/zero) & echo >$begun; exit 0");
    runner.endAll(std::chrono::hours(1));
    const int status = script.result().status;
    EXPECT_TRUE(status == 0 || status == SIGTERM) << status << ", neither by itself nor as asked";
}

TEST(ProcessCommandRunner, KillsWhatDoesNotEndWhenAsked) {
    ProcessCommandRunner runner;
    EndlessScript script(runner, "trap '' TERM; echo >$begun; while :; do read x </dev/zero; done");
    runner.endAll(std::chrono::milliseconds(1));
    EXPECT_EQ(script.result().status, SIGKILL);
}

TEST(ProcessCommandRunner, WaitsForNoStrangerWhoHoldsTheOutput) {
    ProcessCommandRunner runner;
    const TemporaryFolder folder;
    const std::string end = folder.path("end");
    ASSERT_EQ(::mkfifo(end.c_str(), 0600), 0);
    EndlessScript script(runner, "setsid sh -c \"echo >$begun; read x <" + end + "\" & exit 0");
    runner.endAll(std::chrono::milliseconds(1));
    const int status = script.result().status;
    EXPECT_TRUE(status == 0 || status == SIGTERM) << status << ", neither by itself nor as asked";
    std::ofstream(end) << "now\n";
}

TEST(ProcessCommandRunner, HasNothingToEndAfterwards) {
    ProcessCommandRunner runner;
    EXPECT_EQ(runner.run("/bin/echo", {"before"}, {}).output, "before");
    runner.endAll(std::chrono::hours(1));
    runner.endAll(std::chrono::hours(1));
}

TEST(ProcessCommandRunner, RunsSeveralAtOnce) {
    std::vector<std::jthread> threads;
    std::vector<CommandResult> results(8);
    threads.reserve(results.size());
    for (std::size_t n = 0; n < results.size(); ++n) {
        threads.emplace_back([&results, n] {
            for (int round = 0; round < 10; ++round)
                results[n] = sh("cat; exit " + std::to_string(n), std::to_string(n) + " said");
        });
    }
    threads.clear();
    for (std::size_t n = 0; n < results.size(); ++n)
        EXPECT_EQ(results[n], (CommandResult{static_cast<int>(n), std::to_string(n) + " said"}));
}

}  // namespace
}  // namespace bildkurier
