// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CommandLine.h"
#include "LocalDay.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

using Command = CommandLine::Command;

std::expected<CommandLine, CommandLineAnswer> parse(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "bildkurier-cli");
    std::vector<char*> pointers;
    pointers.reserve(arguments.size());
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    return parseCommandLine(pointers);
}

TEST(CommandLine, LeavesToTheSettingsWhatIsNotSaid) {
    const auto parsed = parse({"import", "--card", "/card", "--to", "/bilder"});
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->command, Command::import);
    EXPECT_EQ(parsed->cards, std::vector<std::string>{"/card"});
    EXPECT_EQ(parsed->camera, std::nullopt);
    EXPECT_EQ(parsed->destination, "/bilder");
    EXPECT_EQ(parsed->byDate, std::nullopt);
    EXPECT_EQ(parsed->byType, std::nullopt);
    EXPECT_EQ(parsed->since, std::nullopt);
    EXPECT_FALSE(parsed->json);
}

TEST(CommandLine, TakesEveryOption) {
    const auto parsed =
        parse({"plan", "--card", "/a", "--card", "/b", "--camera", "serial:7", "--to", "/c",
               "--by-date", "--no-by-type", "--since", "2024-05-09", "--json"});
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->command, Command::plan);
    EXPECT_EQ(parsed->cards, (std::vector<std::string>{"/a", "/b"}));
    EXPECT_EQ(parsed->camera, "serial:7");
    EXPECT_EQ(parsed->byDate, true);
    EXPECT_EQ(parsed->byType, false);
    EXPECT_EQ(parsed->since, startOfLocalDay("2024-05-09"));
    EXPECT_TRUE(parsed->json);
}

TEST(CommandLine, TakesTheOptionsOfAProof) {
    const auto byKey = parse({"verify", "--card", "/a", "--camera", "serial:7", "--to", "/c"});
    ASSERT_TRUE(byKey);
    EXPECT_EQ(byKey->command, Command::verify);
    EXPECT_EQ(byKey->camera, "serial:7");
    EXPECT_EQ(byKey->destination, "/c");
    EXPECT_FALSE(byKey->content);
    EXPECT_TRUE(parse({"verify", "--content"})->content);
    EXPECT_TRUE(parse({"import", "--verify"})->verify);
    EXPECT_FALSE(parse({"import"})->verify);
}

TEST(CommandLine, MakesPathsAbsolute) {
    const auto parsed = parse({"import", "--card", "karte", "--to", "link/../bilder"});
    ASSERT_TRUE(parsed);
    const auto here = std::filesystem::current_path();
    EXPECT_EQ(parsed->cards[0], (here / "karte").string());
    EXPECT_EQ(parsed->destination, (here / "link/../bilder").string());
}

TEST(CommandLine, TakesAFolderThatIsNamedTwiceOnce) {
    const auto parsed = parse({"plan", "--card", "/a", "--card", "/b/", "--card", "/a/", "--card",
                               "/c/../a/.", "--card", "/b"});
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->cards, (std::vector<std::string>{"/a", "/b/"}));
}

TEST(CommandLine, ListsCamerasWithoutADestination) {
    const auto parsed = parse({"cameras", "--json"});
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->command, Command::cameras);
    EXPECT_TRUE(parsed->json);
    EXPECT_EQ(parsed->destination, std::nullopt);
}

TEST(CommandLine, WatchesForATrustedCamera) {
    const auto parsed = parse({"watch", "--trust", "EOS", "--to", "/bilder"});
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->command, Command::watch);
    EXPECT_EQ(parsed->trust, "EOS");
    EXPECT_EQ(parsed->destination, "/bilder");
}

TEST(CommandLine, TakesASettingAndItsValue) {
    const auto parsed = parse({"settings", "byDate", "true"});
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->command, Command::settings);
    EXPECT_EQ(parsed->key, "byDate");
    EXPECT_EQ(parsed->value, "true");
}

TEST(CommandLine, TakesAServerForADestination) {
    const auto parsed = parse({"import", "--to", "sftp://anna@nas:2222/fotos"});
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->destination, std::nullopt);
    EXPECT_EQ(parsed->server,
              (ServerAddress{.user = "anna", .host = "nas:2222", .path = "/fotos"}));
}

TEST(CommandLine, ManagesKeyAndServers) {
    const struct {
        std::vector<std::string> arguments;
        Command command;
    } cases[] = {
        {{"key", "show"}, Command::keyShow},
        {{"key", "generate", "--replace"}, Command::keyGenerate},
        {{"key", "import", "id_ed25519"}, Command::keyImport},
        {{"key", "remove"}, Command::keyRemove},
        {{"sftp", "check", "sftp://nas/fotos"}, Command::sftpCheck},
        {{"sftp", "forget", "sftp://nas/fotos"}, Command::sftpForget},
    };
    for (const auto& [arguments, command] : cases) {
        const auto parsed = parse(arguments);
        ASSERT_TRUE(parsed) << parsed.error().text;
        EXPECT_EQ(parsed->command, command);
        EXPECT_EQ(parsed->replace, command == Command::keyGenerate);
        EXPECT_EQ(parsed->server.has_value(), arguments.front() == "sftp");
    }
    EXPECT_TRUE(parse({"key", "import", "id_ed25519", "--replace"})->replace);
    const auto import = parse({"key", "import", "id_ed25519"});
    EXPECT_EQ(import->file, (std::filesystem::current_path() / "id_ed25519").string());
}

TEST(CommandLine, ExplainsInGermanWhatIsOff) {
    const struct {
        std::vector<std::string> arguments;
        std::string message;
    } cases[] = {
        {{}, "Es fehlt ein Befehl: cameras, plan, import, verify, watch, settings, key oder sftp."},
        {{"import", "--to"}, "Der Angabe --to fehlt ein Wert."},
        {{"import", "--to", "/a", "--to", "/b"}, "Die Angabe --to steht doppelt."},
        {{"import", "--card"}, "Der Angabe --card fehlt ein Wert."},
        {{"import", "--json=x"}, "Die Angabe --json nimmt keinen Wert."},
        {{"verify", "--content=x"}, "Die Angabe --content nimmt keinen Wert."},
        {{"plan", "--by-date=x"}, "Die Angabe --by-date nimmt keinen Wert."},
        {{"import", "--to", ""}, "Der Name eines Ordners fehlt."},
        {{"import", "--to", "/a", "--card", ""}, "Der Name eines Ordners fehlt."},
        {{"import", "--to", "/a", "--since", "9.5.2024"},
         "„9.5.2024“ ist kein Tag wie 2024-05-09."},
        {{"import", "--to", "/a", "--since", "2024-02-30"},
         "„2024-02-30“ ist kein Tag wie 2024-05-09."},
        {{"import", "--to", "/a", "--frobnicate"}, "Unbekannte Angabe: --frobnicate"},
        {{"import", "--to", "/a", "rest"}, "Unbekannte Angabe: rest"},
        {{"import", "--to", "/a", "--by-date", "--no-by-date"},
         "Die Angabe --by-date widerspricht einer anderen."},
        {{"frobnicate"}, "Unbekannter Befehl: frobnicate"},
        {{"-x"}, "Unbekannte Angabe: -x"},
        {{"cameras", "--to", "x"}, "Unbekannte Angabe: --to x"},
        {{"import", "--to", "ftp://example.com/bilder"},
         "„ftp://example.com/bilder“ ist weder ein Ordner dieses Rechners noch eine Adresse wie "
         "sftp://benutzer@rechner:22/ordner."},
        {{"import", "--card", "ftp://example.com/bilder"},
         "„ftp://example.com/bilder“ ist kein Ordner dieses Rechners."},
        {{"import", "--to", "sftp:///bilder"},
         "„sftp:///bilder“ ist keine Adresse wie sftp://benutzer@rechner:22/ordner."},
        {{"key"}, "Es fehlt ein Befehl: show, generate, import oder remove."},
        {{"key", "frobnicate"}, "Unbekannter Befehl: frobnicate"},
        {{"key", "import"}, "Es fehlt die Datei mit dem privaten Schlüssel."},
        {{"sftp"}, "Es fehlt ein Befehl: check oder forget."},
        {{"sftp", "check"}, "Es fehlt die Adresse des Servers."},
        {{"sftp", "forget", "nas"},
         "„nas“ ist keine Adresse wie sftp://benutzer@rechner:22/ordner."},
        {{"settings", "byDate", "true", "false"}, "Unbekannte Angabe: false"},
        {{"plan", "--card", "/a", "/b"}, "Unbekannte Angabe: /b"},
        {{"cameras", "--card", "/a", "--card", "/b", "c"}, "Unbekannte Angabe: c"},
        {{"watch", "--card", "/a", "b", "--to", "/c"}, "Unbekannte Angabe: b"},
    };
    for (const auto& [arguments, message] : cases) {
        const auto parsed = parse(arguments);
        ASSERT_FALSE(parsed) << message;
        EXPECT_EQ(parsed.error().status, ExitStatus::usage);
        EXPECT_EQ(parsed.error().text.substr(0, parsed.error().text.find('\n')), message);
        EXPECT_FALSE(parsed.error().json);
    }
}

TEST(CommandLine, NamesTheHelpThatExplainsWhatIsOff) {
    const struct {
        std::vector<std::string> arguments;
        std::string help;
    } cases[] = {
        {{}, "bildkurier-cli --help"},
        {{"frobnicate"}, "bildkurier-cli --help"},
        {{"import", "--frobnicate"}, "bildkurier-cli import --help"},
        {{"key"}, "bildkurier-cli key --help"},
        {{"key", "import"}, "bildkurier-cli key import --help"},
    };
    for (const auto& [arguments, help] : cases) {
        const auto parsed = parse(arguments);
        ASSERT_FALSE(parsed);
        EXPECT_TRUE(parsed.error().text.ends_with("\nMehr dazu: " + help)) << parsed.error().text;
    }
}

TEST(CommandLine, ServesAProgramThatSaysSoBeforeTheCommand) {
    EXPECT_TRUE(parse({"--json", "cameras"})->json);
    EXPECT_FALSE(parse({"cameras"})->json);
}

TEST(CommandLine, TellsAProgramWhatIsOffInOneLine) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"import", "--json", "--frobnicate"},
          {"import", "--frobnicate", "--json"}}) {
        const auto parsed = parse(arguments);
        ASSERT_FALSE(parsed);
        EXPECT_EQ(parsed.error().status, ExitStatus::usage);
        EXPECT_EQ(parsed.error().text, "Unbekannte Angabe: --frobnicate");
        EXPECT_TRUE(parsed.error().json);
    }
}

TEST(CommandLine, OffersHelpInGerman) {
    for (const std::vector<std::string>& words : {std::vector<std::string>{},
                                                  {"cameras"},
                                                  {"plan"},
                                                  {"import"},
                                                  {"watch"},
                                                  {"settings"},
                                                  {"key"},
                                                  {"key", "show"},
                                                  {"key", "generate"},
                                                  {"key", "import"},
                                                  {"key", "remove"},
                                                  {"sftp"},
                                                  {"sftp", "check"},
                                                  {"sftp", "forget"}}) {
        for (const std::string flag : {"-h", "--help"}) {
            auto arguments = words;
            arguments.push_back(flag);
            const auto parsed = parse(arguments);
            ASSERT_FALSE(parsed);
            const auto& [status, text, json] = parsed.error();
            EXPECT_EQ(status, ExitStatus::success);
            EXPECT_TRUE(text.contains("\nAufruf: bildkurier-cli")) << text;
            EXPECT_FALSE(text.ends_with('\n')) << text;
            for (const char* word : {"Usage", "Positionals", "OPTIONS", "Options", "SUBCOMMAND",
                                     "REQUIRED", "Excludes", "KEY", "VALUE", "TEXT:", "Display"}) {
                EXPECT_FALSE(text.contains(word)) << word << " in " << text;
            }
        }
    }
}

TEST(CommandLine, ShowsItsVersion) {
    const auto parsed = parse({"--version"});
    ASSERT_FALSE(parsed);
    EXPECT_EQ(parsed.error().status, ExitStatus::success);
    EXPECT_TRUE(parsed.error().text.starts_with("Bildkurier ")) << parsed.error().text;
    EXPECT_TRUE(parsed.error().text.contains('.')) << parsed.error().text;
}

TEST(StartOfLocalDay, TakesOnlyRealDays) {
    for (const std::string day :
         {"", "2024-5-09", "2024-05-9", "2024-13-01", "2024-00-10", "2023-02-29", "2024/05/09",
          "2024-05-09 ", "+024-05-09", "2024-05-0x"}) {
        EXPECT_EQ(startOfLocalDay(day), std::nullopt) << day;
    }
    EXPECT_NE(startOfLocalDay("2024-02-29"), std::nullopt);
}

}  // namespace
}  // namespace bildkurier
