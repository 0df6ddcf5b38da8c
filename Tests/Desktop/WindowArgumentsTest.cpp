// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TemporaryFolder.h"
#include "WindowArguments.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

using Words = std::vector<std::string>;

auto parsed(Words words) {
    words.insert(words.begin(), "bildkurier");
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    return parseWindowArguments(arguments);
}

TEST(WindowArguments, AreNoneForAPlainStart) {
    const auto arguments = parsed({});
    ASSERT_TRUE(arguments.has_value());
    EXPECT_EQ(arguments->cards, Words());
}

TEST(WindowArguments, NameCardsWhateverTheBytesOfTheirNames) {
    const TemporaryFolder folder;
    const std::string one = folder.makeFolder("ä\xFF");
    const std::string two = folder.makeFolder("b c");
    const auto arguments = parsed({"--card", one, "--card=" + two});
    ASSERT_TRUE(arguments.has_value()) << arguments.error().text;
    EXPECT_EQ(arguments->cards, (Words{one, two}));
}

TEST(WindowArguments, NameCardsFromTheCurrentFolderOn) {
    const auto arguments = parsed({"--card", "."});
    ASSERT_TRUE(arguments.has_value());
    EXPECT_EQ(arguments->cards, Words{std::filesystem::current_path() / "."});
}

TEST(WindowArguments, LeaveTheToolkitItsOwn) {
    EXPECT_TRUE(parsed({"-session", "10f", "-platform", "xcb"}).has_value());
}

TEST(WindowArguments, AskForHelpOrTheVersion) {
    for (const char* word : {"--help", "-h"}) {
        const auto answer = parsed({word});
        ASSERT_FALSE(answer.has_value()) << word;
        EXPECT_EQ(answer.error().exitStatus, 0) << word;
        EXPECT_NE(answer.error().text.find("--card ORDNER"), std::string::npos) << word;
    }
    const auto version = parsed({"--version"});
    ASSERT_FALSE(version.has_value());
    EXPECT_EQ(version.error().exitStatus, 0);
    EXPECT_TRUE(version.error().text.starts_with("Bildkurier ")) << version.error().text;
}

TEST(WindowArguments, AreRefusedWhereTheyMakeNoSense) {
    const std::string more = "\nMehr dazu: bildkurier --help";
    const std::string missing =
        "Hinter --card fehlt ein Ordner, oder hinter einer Angabe steht zu viel.";
    const struct {
        Words words;
        int exitStatus;
        std::string text;
    } cases[] = {
        {{"--unsinn"}, 2, "Unbekannte Angabe: --unsinn" + more},
        {{"--help", "--unsinn"}, 2, "Unbekannte Angabe: --unsinn" + more},
        {{"import"}, 2, "Unbekannte Angabe: import" + more},
        {{"--card"}, 2, missing + more},
        {{"--version=3"}, 2, missing + more},
        {{"--card", "/dev/null"}, 3, "Die Karte „/dev/null“ ist kein lesbarer Ordner."},
        {{"--card", ""}, 3, "Die Karte „“ ist kein lesbarer Ordner."},
        {{"--card", "/", "--card", "/nirgends"},
         3,
         "Die Karte „/nirgends“ ist kein lesbarer Ordner."},
    };
    for (const auto& [words, exitStatus, text] : cases) {
        const auto answer = parsed(words);
        ASSERT_FALSE(answer.has_value()) << text;
        EXPECT_EQ(answer.error().exitStatus, exitStatus) << text;
        EXPECT_EQ(answer.error().text, text);
    }
}

TEST(WindowArguments, AreAnsweredWhereTheWindowIsOpen) {
    const std::string silent = "Bildkurier läuft schon, aber sein Fenster antwortet nicht.";
    const std::string cardLeft =
        "Das Fenster ist schon offen, und der Ordner von --card wurde nicht als Kamera genommen. "
        "Erst das Fenster schließen.";
    const WindowArguments plain;
    const WindowArguments withCard{.cards = {"/karte"}};
    const struct {
        const WindowArguments& arguments;
        bool hasAnswered;
        std::string text;
    } cases[] = {{plain, false, silent}, {withCard, false, silent}, {withCard, true, cardLeft}};
    for (const auto& [arguments, hasAnswered, text] : cases) {
        const auto answer = answerOfSecond(arguments, hasAnswered);
        ASSERT_TRUE(answer.has_value()) << text;
        EXPECT_EQ(answer->exitStatus, 1) << text;
        EXPECT_EQ(answer->text, text);
    }
    EXPECT_FALSE(answerOfSecond(plain, true).has_value());
}

}  // namespace
}  // namespace bildkurier
