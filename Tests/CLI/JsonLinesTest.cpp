// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "JsonReport.h"
#include "ProgramTest.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>
#include <sstream>

namespace bildkurier {
namespace {

using Json = nlohmann::json;

std::set<std::string> keys(const Json& object) {
    std::set<std::string> found;
    for (const auto& [key, value] : object.items()) found.insert(key);
    return found;
}

class JsonLinesTest : public ProgramTest {
protected:
    void SetUp() override {
        addLarge("IMG_1.JPG", 1'000);
        addLarge("IMG_2.CR3", 3'000);
        addLarge("IMG_3.JPG", 500);
    }

    /// The events on standard output: each line is one object.
    static std::vector<Json> events(const ProgramResult& result) {
        std::vector<Json> all;
        std::istringstream lines(result.out);
        for (std::string line; std::getline(lines, line);) {
            all.push_back(Json::parse(line));
            EXPECT_TRUE(all.back().is_object()) << line;
        }
        return all;
    }
};

TEST_F(JsonLinesTest, TellAPlan) {
    const auto result = run({"plan", "--card", card, "--to", destination, "--json"});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(events(result), std::vector{Json::parse(R"({
        "event": "plan", "files": 3, "bytes": 4500,
        "types": [{"ext": "CR3", "count": 1, "bytes": 3000},
                  {"ext": "JPG", "count": 2, "bytes": 1500}]})")});
}

TEST_F(JsonLinesTest, TellAnImportInOrder) {
    const auto result = import({"--json"});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(result.err, "");
    const auto all = events(result);
    ASSERT_GT(all.size(), 5U);
    EXPECT_EQ(all.front()["event"], "plan");
    EXPECT_EQ(all.front()["files"], 3);
    EXPECT_EQ(all.back(), Json::parse(R"({"event": "finished", "total": 3, "done": 3,
        "failed": 0, "bytes": 4500, "cancelled": false})"));

    std::vector<std::string> lines;
    long done = 0;
    for (const auto& event : std::vector(all.begin() + 1, all.end() - 1)) {
        if (event["event"] == "log") {
            EXPECT_EQ(keys(event), (std::set<std::string>{"event", "line"}));
            lines.push_back(event["line"]);
            continue;
        }
        EXPECT_EQ(event["event"], "progress") << event;
        EXPECT_EQ(keys(event), (std::set<std::string>{"event", "total", "done", "failed",
                                                      "bytesDone", "currentName", "currentBytes",
                                                      "currentTotal", "isTransferring"}));
        EXPECT_GE(event["done"], done);
        EXPECT_LE(event["done"], lines.size());
        done = event["done"];
    }
    EXPECT_EQ(done, 3);
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_TRUE(lines.back().starts_with("Fertig: 3 geladen (4 KB)")) << lines.back();
    lines.pop_back();
    std::ranges::sort(lines);
    EXPECT_EQ(lines, (Strings{"✓ CR3/IMG_2.CR3  (3 KB)", "✓ JPG/IMG_1.JPG  (1 KB)",
                              "✓ JPG/IMG_3.JPG  (500 Byte)"}));
}

TEST(JsonReport, TellsEveryFieldOfTheProgress) {
    testing::internal::CaptureStdout();
    JsonReport().progress({.total = 1,
                           .done = 2,
                           .failed = 3,
                           .bytesDone = 4,
                           .currentName = "5",
                           .currentBytes = 6,
                           .currentTotal = 7,
                           .isTransferring = true});
    EXPECT_EQ(Json::parse(testing::internal::GetCapturedStdout()),
              Json::parse(R"({"event": "progress", "total": 1, "done": 2, "failed": 3,
                  "bytesDone": 4, "currentName": "5", "currentBytes": 6, "currentTotal": 7,
                  "isTransferring": true})"));
}

TEST(JsonReport, TellsThatAnImportWasCancelled) {
    testing::internal::CaptureStdout();
    JsonReport().finished({.total = 2, .done = 1, .bytesDone = 4}, true);
    EXPECT_EQ(Json::parse(testing::internal::GetCapturedStdout()),
              Json::parse(R"({"event": "finished", "total": 2, "done": 1, "failed": 0,
                  "bytes": 4, "cancelled": true})"));
}

TEST_F(JsonLinesTest, TellOfANameThatIsNotUtf8) {
    add("IMG_\xff.JPG", "four");
    const auto result = import({"--json"});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    const auto all = events(result);
    EXPECT_TRUE(std::ranges::any_of(all, [](const Json& event) {
        return event["event"] == "progress" && event["currentName"] == "IMG_\ufffd.JPG";
    })) << result.out;
    EXPECT_TRUE(std::ranges::any_of(all, [](const Json& event) {
        return event["event"] == "log" && event["line"] == "✓ JPG/IMG_\ufffd.JPG  (4 Byte)";
    })) << result.out;
}

TEST_F(JsonLinesTest, TellAFailure) {
    add("bad\nname.JPG", "x");
    const auto result = import({"--json"});
    EXPECT_EQ(result.exitStatus, 1) << result.err;
    const auto all = events(result);
    EXPECT_TRUE(std::ranges::any_of(all, [](const Json& event) {
        return event["event"] == "log" && event["line"] == "✗ bad␊name.JPG: Ungültiger Dateiname";
    })) << result.out;
    EXPECT_EQ(all.back(), Json::parse(R"({"event": "finished", "total": 4, "done": 3,
        "failed": 1, "bytes": 4501, "cancelled": false})"));
}

TEST_F(JsonLinesTest, TellWhatKeepsACommandFromBeingCarriedOut) {
    const std::string none = folder.path("none");
    const struct {
        Strings words;
        int exitStatus;
        std::string line;
    } cases[] = {
        {{"import", "--frobnicate"}, 2, "Unbekannte Angabe: --frobnicate"},
        {{"plan", "--card", none}, 3, "Die Karte „" + none + "“ ist kein lesbarer Ordner."},
        {{"import", "--card", card, "--card", none},
         3,
         "Die Karte „" + none + "“ ist kein lesbarer Ordner."},
        {{"watch", "--trust", "card", "--card", "/dev/null"},
         3,
         "Die Karte „/dev/null“ ist kein lesbarer Ordner."},
        {{"import", "--card", card, "--to", picture("IMG_1.JPG")},
         4,
         "Der Zielordner ist kein Ordner."},
        {{"settings", "farbe"}, 2, "Eine Einstellung „farbe“ gibt es nicht."},
        {{"key", "show"}, 4, "Die App hat noch keinen eigenen Schlüssel."},
        {{"watch"}, 3, "Noch ist keine Kamera vertraut: bitte mit --trust eine nennen."},
    };
    for (auto [words, exitStatus, line] : cases) {
        words.emplace_back("--json");
        const auto result = run(words, {{"XDG_DATA_HOME", folder.path("data")}});
        EXPECT_EQ(result.exitStatus, exitStatus) << line;
        EXPECT_EQ(result.err, "");
        EXPECT_EQ(events(result), (std::vector{Json{{"event", "error"}, {"line", line}}}));
    }
}

TEST_F(JsonLinesTest, TellThatASettingIsNotKept) {
    const auto result = run({"settings", "byDate", "true", "--json"},
                            {{"XDG_CONFIG_HOME", folder.write("occupied", "a file")}});
    EXPECT_EQ(result.exitStatus, 4);
    EXPECT_EQ(events(result),
              (std::vector{Json{{"event", "error"},
                                {"line", "Die Einstellung lässt sich nicht speichern."}}}));
}

TEST_F(JsonLinesTest, NameACamera) {
    const auto result = run({"cameras", "--card", card, "--json"});
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    const auto all = events(result);
    ASSERT_EQ(all.size(), 1U);
    EXPECT_TRUE(all.front().contains("name"));
    EXPECT_TRUE(all.front()["identity"].is_string());
}

}  // namespace
}  // namespace bildkurier
