// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramTest.h"

namespace bildkurier {
namespace {

class UsersLocaleTest : public ProgramTest {};

TEST_F(UsersLocaleTest, SaysHowNumbersAreWritten) {
    const struct {
        std::string locale;
        std::string plan;
    } cases[] = {
        {"de_DE.UTF-8", "1 neue Dateien (38,5 MB) bereit zum Import."},
        {"en_US.UTF-8", "1 neue Dateien (38.5 MB) bereit zum Import."},
        {"C", "1 neue Dateien (38,5 MB) bereit zum Import."},
        {"C.UTF-8", "1 neue Dateien (38,5 MB) bereit zum Import."},
        {"POSIX", "1 neue Dateien (38,5 MB) bereit zum Import."},
        {"", "1 neue Dateien (38,5 MB) bereit zum Import."},
    };
    addHollow("IMG_1.MP4", 38'500'000);
    for (const auto& [locale, plan] : cases) {
        const auto result = run({"plan", "--card", card, "--to", destination},
                                {{"LC_ALL", locale}, {"LC_MESSAGES", locale}, {"LANG", locale}});
        EXPECT_TRUE(result.out.starts_with(plan + "\n")) << locale << ": " << result.out;
    }
}

TEST_F(UsersLocaleTest, SaysHowDaysAreWritten) {
    add("IMG_1.JPG", "one");
    const auto result = run({"plan", "--card", card, "--to", destination, "--since", "2024-07-01"},
                            {{"LC_ALL", "C"}});
    EXPECT_TRUE(result.out.contains("(ab 01.07.24)")) << result.out;
}

}  // namespace
}  // namespace bildkurier
