// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EnvironmentVariable.h"
#include "OrdinaryUser.h"
#include "TemporaryFolder.h"
#include "UserFolders.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <filesystem>

namespace bildkurier {

namespace {

constexpr std::uint32_t unknownUser = 3'999'999'999;

TEST(HomeFolder, IsTheOneInTheUserDatabase) {
    const EnvironmentVariable home("HOME", "/anderswo");
    EXPECT_EQ(homeFolder(0), "/root");
    // No other thread runs. NOLINTNEXTLINE(concurrency-mt-unsafe)
    const passwd* me = ::getpwuid(::getuid());
    EXPECT_EQ(homeFolder(), me ? me->pw_dir : "/anderswo");
}

TEST(HomeFolder, IsTheVariableForAUserWhomTheDatabaseDoesNotKnow) {
    const EnvironmentVariable home("HOME", "/anderswo");
    EXPECT_EQ(homeFolder(unknownUser), "/anderswo");
}

TEST(ConfigurationFolder, FollowsTheEnvironment) {
    const EnvironmentVariable home("HOME", "/home/anna");
    const struct {
        std::optional<std::string> variable;
        std::string folder;
    } cases[] = {
        {"/etc/anna", "/etc/anna/bildkurier"},
        {std::nullopt, "/home/anna/.config/bildkurier"},
        {"", "/home/anna/.config/bildkurier"},
        {"relativ", "/home/anna/.config/bildkurier"},
    };
    for (const auto& [variable, folder] : cases) {
        const EnvironmentVariable configuration("XDG_CONFIG_HOME", variable);
        EXPECT_EQ(configurationFolder(), folder);
    }
}

TEST(ConfigurationFolder, IsBelowTheHomeInTheUserDatabaseWithoutAnyVariable) {
    const EnvironmentVariable home("HOME", std::nullopt);
    const EnvironmentVariable configuration("XDG_CONFIG_HOME", std::nullopt);
    EXPECT_EQ(configurationFolder(), homeFolder(::getuid()) + "/.config/bildkurier");
}

TEST(DataFolder, FollowsTheEnvironment) {
    const EnvironmentVariable home("HOME", "/home/anna");
    const struct {
        std::optional<std::string> variable;
        std::string folder;
    } cases[] = {
        {"/daten/anna", "/daten/anna"},
        {std::nullopt, "/home/anna/.local/share"},
        {"", "/home/anna/.local/share"},
        {"relativ", "/home/anna/.local/share"},
    };
    for (const auto& [variable, folder] : cases) {
        const EnvironmentVariable data("XDG_DATA_HOME", variable);
        EXPECT_EQ(dataFolder(), folder);
    }
}

TEST(RuntimeFolder, IsInTheOneOfTheSession) {
    const TemporaryFolder session;
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", session.path());
    EXPECT_EQ(runtimeFolder(), session.path("bildkurier"));
}

TEST(RuntimeFolder, IsElsewhereWhenTheSessionHasNoneOrAnotherUsers) {
    const TemporaryFolder home;
    const EnvironmentVariable state("XDG_STATE_HOME", home.path());
    for (const std::optional<std::string>& variable : {std::optional<std::string>(),
                                                       {""},
                                                       {"relativ"},
                                                       {home.path("fehlt")},
                                                       {home.write("datei", "")},
                                                       {"/"}}) {
        const EnvironmentVariable runtime("XDG_RUNTIME_DIR", variable);
        runAsOrdinaryUser([&] {
            const std::string standard = "/run/user/" + std::to_string(::geteuid());
            EXPECT_EQ(runtimeFolder(),
                      (std::filesystem::exists(standard) ? standard : home.path()) + "/bildkurier")
                << variable.value_or("(keine)");
        });
    }
}

TEST(RuntimeFolder, IsForAUserWithoutSessionsInTheFolderForState) {
    if (std::filesystem::exists("/run/user/" + std::to_string(::geteuid())))
        GTEST_SKIP() << "This user has a session.";
    const EnvironmentVariable runtime("XDG_RUNTIME_DIR", std::nullopt);
    const EnvironmentVariable state("XDG_STATE_HOME", std::nullopt);
    const EnvironmentVariable home("HOME", "/home/anna");
    EXPECT_EQ(runtimeFolder(), "/home/anna/.local/state/bildkurier");
}

}  // namespace

}  // namespace bildkurier
