// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramTest.h"
#include "ProgressBar.h"
#include "TextReport.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace bildkurier {
namespace {

constexpr std::string_view eraseLine = "\r\x1b[K";

/// A terminal that shows nothing, but knows what was written to it.
class Terminal {
public:
    explicit Terminal(unsigned short columns) {
        const winsize size{.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
        isOpen_ = grantpt(screen_) == 0 && unlockpt(screen_) == 0 &&
                  ptsname_r(screen_, name_.data(), name_.size()) == 0 &&
                  ioctl(screen_, TIOCSWINSZ, &size) == 0;
    }
    Terminal(const Terminal&) = delete;
    Terminal& operator=(const Terminal&) = delete;
    ~Terminal() { close(screen_); }

    bool isOpen() const { return isOpen_; }
    std::string name() const { return name_.data(); }

    /// All that was written so far.
    std::string written() const {
        std::string all;
        std::array<char, 4096> bytes{};
        for (ssize_t count = 0; (count = read(screen_, bytes.data(), bytes.size())) > 0;)
            all.append(bytes.data(), static_cast<std::size_t>(count));
        return all;
    }

private:
    int screen_ = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    std::array<char, 64> name_{};
    bool isOpen_ = false;
};

/// Sends to a terminal what this process writes to its standard streams.
class OnTerminal {
public:
    explicit OnTerminal(const Terminal& terminal) {
        const int screen = open(terminal.name().c_str(), O_WRONLY | O_NOCTTY | O_CLOEXEC);
        dup2(screen, STDOUT_FILENO);
        dup2(screen, STDERR_FILENO);
        close(screen);
    }
    OnTerminal(const OnTerminal&) = delete;
    OnTerminal& operator=(const OnTerminal&) = delete;
    ~OnTerminal() {
        std::fflush(stdout);
        dup2(out_, STDOUT_FILENO);
        dup2(err_, STDERR_FILENO);
        close(out_);
        close(err_);
    }

private:
    int out_ = dup(STDOUT_FILENO);
    int err_ = dup(STDERR_FILENO);
};

class ProgressBarTest : public ProgramTest {
protected:
    /// What an import writes to a terminal of that width.
    std::string writtenByImport(unsigned short columns) const {
        const Terminal terminal(columns);
        EXPECT_TRUE(terminal.isOpen());
        const TemporaryFolder user;
        ProgramCall program =
            call({"-c", R"(tty=$1; shift; exec "$@" >"$tty" 2>&1)", "sh", terminal.name(),
                  BILDKURIER_CLI, "import", "--card", card, "--to", folder.path("to")},
                 {}, user);
        program.path = "/bin/sh";
        EXPECT_EQ(program.run().exitStatus, 0);
        return terminal.written();
    }
};

/// The lines that stay on a terminal.
Strings shown(const std::string& written) {
    Strings lines;
    std::istringstream all(written);
    for (std::string line; std::getline(all, line);) {
        if (line.ends_with('\r')) line.pop_back();
        const std::size_t erased = line.rfind(eraseLine);
        lines.push_back(erased == std::string::npos ? line
                                                    : line.substr(erased + eraseLine.size()));
    }
    return lines;
}

TEST_F(ProgressBarTest, StandsOnATerminalAsWideAsThatAndGoesBeforeEveryLine) {
    addLarge("IMG_1.JPG", 3'000'000);
    const std::string written = writtenByImport(200);
    EXPECT_NE(written.find("[████████████████████] 100 %  1/1 Dateien  3 MB von 3 MB"),
              std::string::npos)
        << written;
    EXPECT_NE(written.find("  noch "), std::string::npos) << written;
    const Strings lines = shown(written);
    ASSERT_EQ(lines.size(), 3U) << written;
    EXPECT_EQ(lines[2], "");
    EXPECT_EQ(lines[0], "✓ JPG/IMG_1.JPG  (3 MB)");
    EXPECT_TRUE(lines[1].starts_with("Fertig: 1 geladen (3 MB)")) << lines[1];
}

TEST_F(ProgressBarTest, StandsAgainBelowALine) {
    const Terminal terminal(120);
    ASSERT_TRUE(terminal.isOpen());
    {
        const OnTerminal all(terminal);
        TextReport report;
        report.importing({.files = 2, .bytes = 200});
        report.progress({.total = 2, .done = 1, .bytesDone = 100});
        report.log("✓ A.JPG");
        report.speed({.current = 1e6, .average = 1e6});
        report.log("✓ B.JPG");
        report.finished({}, false);
    }
    const std::string bar = progressLine({.total = 2, .done = 1, .bytesDone = 100}, 200,
                                         {.current = 1e6, .average = 1e6}, 119);
    const std::string erase(eraseLine);
    EXPECT_EQ(terminal.written(),
              "✓ A.JPG\r\n" + erase + bar + erase + "✓ B.JPG\r\n" + erase + bar + erase);
}

TEST_F(ProgressBarTest, DoesNotFallBackWhileAFileIsMovedIntoPlace) {
    const Terminal terminal(120);
    ASSERT_TRUE(terminal.isOpen());
    {
        const OnTerminal all(terminal);
        ProgressBar bar;
        const auto draw = [&bar](const ImportRunner::Progress& progress) {
            bar.progress(progress);
            bar.draw({});
        };
        bar.begin(200);
        draw({.total = 2, .currentBytes = 70, .currentTotal = 100});
        draw({.total = 2, .isTransferring = true});
        draw({.total = 2, .done = 1, .bytesDone = 100});
        bar.begin(200);
        draw({.total = 2, .currentBytes = 10, .currentTotal = 100});
    }
    Strings shares;
    std::istringstream words(terminal.written());
    for (std::string word, last; words >> word; last = word)
        if (word == "%") shares.push_back(last);
    EXPECT_EQ(shares, (Strings{"35", "35", "50", "5"}));
}

TEST_F(ProgressBarTest, LeavesOutOnANarrowTerminalWhatHasNoPlace) {
    addLarge("IMG_1.JPG", 3'000'000);
    const std::string written = writtenByImport(25);
    EXPECT_NE(written.find(std::string(eraseLine) + "100 %  1/1 Dateien" + std::string(eraseLine)),
              std::string::npos)
        << written;
}

}  // namespace
}  // namespace bildkurier
