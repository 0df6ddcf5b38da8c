// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramTest.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>

namespace bildkurier {
namespace {

class SettingsProgramTest : public ProgramTest {
protected:
    ProgramResult settings(Strings words) {
        words.insert(words.begin(), "settings");
        return run(words, environment);
    }

    std::string value(const std::string& key) { return settings({key}).out; }

    const Environment environment{{"XDG_CONFIG_HOME", folder.makeFolder("config")}};
};

TEST_F(SettingsProgramTest, ShowsTheDefaultsOfAFreshInstallation) {
    const auto result = settings({"--json"});
    EXPECT_EQ(result.exitStatus, 0);
    auto shown = nlohmann::json::parse(result.out);
    EXPECT_TRUE(shown["dest"].get<std::string>().ends_with("/Pictures/Bildkurier"));
    shown.erase("dest");
    EXPECT_EQ(shown, nlohmann::json::parse(R"({
        "destinationKind": "folder", "sftpUser": "", "sftpHost": "", "sftpPath": "",
        "byDate": false, "byType": true, "useFromDate": false, "fromDay": null,
        "autoImportEnabled": false, "autoImportCameraIdentity": null,
        "autoImportCameraName": null})"));
}

TEST_F(SettingsProgramTest, AreAllExplained) {
    const std::string help = settings({"--help"}).out;
    const auto shown = nlohmann::json::parse(settings({"--json"}).out);
    for (const auto& [key, value] : shown.items()) {
        EXPECT_TRUE(help.contains("\n  " + key + " ")) << key << " in " << help;
    }
}

TEST_F(SettingsProgramTest, KeepsEveryChoice) {
    const struct {
        std::string key;
        std::string value;
    } choices[] = {
        {"dest", card},
        {"destinationKind", "sftp"},
        {"sftpUser", "anna"},
        {"sftpHost", "example.com:2222"},
        {"sftpPath", "/fotos"},
        {"byDate", "true"},
        {"byType", "false"},
        {"useFromDate", "true"},
        {"fromDay", "2024-05-09"},
        {"autoImportEnabled", "true"},
        {"autoImportCameraIdentity", "serial:7"},
        {"autoImportCameraName", "EOS"},
    };
    for (const auto& [key, chosen] : choices) {
        const auto result = settings({key, chosen});
        EXPECT_EQ(result.exitStatus, 0) << result.err;
        EXPECT_EQ(result.err, "");
    }
    for (const auto& [key, chosen] : choices) EXPECT_EQ(value(key), key + " = " + chosen + "\n");
}

TEST_F(SettingsProgramTest, SayWhichOfThemConcernTheWindowAlone) {
    const std::string note =
        "# useFromDate und fromDay gelten nur im Fenster; plan und import nehmen --since, watch "
        "lädt alles.\n";
    EXPECT_EQ(settings({"useFromDate", "true"}).out, note);
    EXPECT_EQ(settings({"fromDay", "2024-05-09"}).out, note);
    EXPECT_EQ(settings({"byDate", "true"}).out, "");
    EXPECT_TRUE(settings({}).out.ends_with("\n" + note));
    EXPECT_EQ(settings({"useFromDate", "true", "--json"}).out, "");
}

TEST_F(SettingsProgramTest, SayThatNoCameraIsTrustedYet) {
    const std::string note =
        "# Noch ist keine Kamera vertraut; das macht der Schalter im Fenster oder watch --trust.\n";
    EXPECT_EQ(settings({"autoImportEnabled", "true"}).out, note);
    EXPECT_EQ(settings({"autoImportEnabled", "false"}).out, "");
    ASSERT_EQ(settings({"autoImportCameraIdentity", "serial:7"}).exitStatus, 0);
    EXPECT_EQ(settings({"autoImportEnabled", "true"}).out, "");
}

TEST_F(SettingsProgramTest, ForgetTheFirstDayOfAPeriod) {
    ASSERT_EQ(settings({"fromDay", "2024-05-09"}).exitStatus, 0);
    ASSERT_EQ(settings({"fromDay", ""}).exitStatus, 0);
    EXPECT_EQ(value("fromDay"), "fromDay = \n");
}

TEST_F(SettingsProgramTest, LetNoPeriodChosenInTheWindowLeaveAnythingOut) {
    add("IMG_1.JPG", "one");
    ASSERT_EQ(settings({"useFromDate", "true"}).exitStatus, 0);
    ASSERT_EQ(settings({"fromDay", "2030-01-01"}).exitStatus, 0);
    const auto result = run({"import", "--card", card, "--to", destination}, environment);
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(tree(destination), (Tree{{"JPG/", ""}, {"JPG/IMG_1.JPG", "one"}}));
}

TEST_F(SettingsProgramTest, KeepAChangeBesideLinesThatNobodyCanRead) {
    folder.write("damaged/bildkurier/bildkurier.conf", "[General]\nKaputt\nbyDate=true\n");
    const Environment damaged{{"XDG_CONFIG_HOME", folder.path("damaged")}};
    const auto changed = run({"settings", "byType", "false"}, damaged);
    EXPECT_EQ(changed.exitStatus, 0);
    EXPECT_EQ(changed.err, "");
    EXPECT_EQ(run({"settings", "byType"}, damaged).out, "byType = false\n");
}

TEST_F(SettingsProgramTest, KeepTheAddressOfAServerWithoutBlanks) {
    for (const std::string key : {"sftpUser", "sftpHost", "sftpPath"}) {
        ASSERT_EQ(settings({key, " \t ab  "}).exitStatus, 0);
        EXPECT_EQ(value(key), key + " = ab\n");
        ASSERT_EQ(settings({key, ""}).exitStatus, 0);
        EXPECT_EQ(value(key), key + " = \n");
    }
}

TEST_F(SettingsProgramTest, KeepTheShortestPathOfADestination) {
    const std::string linked = folder.makeFolder("one/two");
    const std::string target = folder.makeFolder("one/neu");
    std::filesystem::create_directory_symlink(linked, folder.path("link"));
    const struct {
        std::string typed;
        std::string kept;
    } cases[] = {
        {target + "/", target},
        {folder.path("one") + "//neu/./", target},
        {linked + "/../neu", target},
        {"/", "/"},
        {folder.path("link"), folder.path("link")},
        {folder.path("link/../neu"), target},
    };
    for (const auto& [typed, kept] : cases) {
        ASSERT_EQ(settings({"dest", typed}).exitStatus, 0);
        EXPECT_EQ(value("dest"), "dest = " + kept + "\n");
    }
}

TEST_F(SettingsProgramTest, RefusesWhatIsNoValueOfThatKind) {
    const struct {
        Strings words;
        std::string message;
    } cases[] = {
        {{"farbe"}, "Eine Einstellung „farbe“ gibt es nicht.\n"},
        {{"byDate", "ja"}, "„ja“ ist weder true noch false.\n"},
        {{"sftpUser", "a:b"}, "„a:b“ ist kein Benutzername.\n"},
        {{"sftpHost", "nas:70000"},
         "„nas:70000“ ist kein Rechner wie nas oder nas:2222 (Port 1 bis 65535).\n"},
        {{"sftpHost", "n;s"}, "„n;s“ ist kein Rechner wie nas oder nas:2222 (Port 1 bis 65535).\n"},
        {{"sftpPath", "/a\nb"}, "Der Pfad enthält Zeilenumbrüche oder Steuerzeichen.\n"},
        {{"sftpPath", "~/fotos"}, "„~/fotos“ ist kein Ordner des Servers wie /home/anna/fotos.\n"},
        {{"sftpPath", "/~anna"}, "„/~anna“ ist kein Ordner des Servers wie /home/anna/fotos.\n"},
        {{"sftpPath", "sftp://nas/x"},
         "„sftp://nas/x“ ist kein Ordner des Servers wie /home/anna/fotos.\n"},
        {{"byType", "1"}, "„1“ ist weder true noch false.\n"},
        {{"destinationKind", "SFTP"}, "„SFTP“ ist weder folder noch sftp.\n"},
        {{"fromDay", "9.5.2024"}, "„9.5.2024“ ist kein Tag wie 2024-05-09.\n"},
        {{"dest", ""}, "Der Name eines Ordners fehlt.\n"},
        {{"dest", "sftp://anna@nas/fotos"},
         "„sftp://anna@nas/fotos“ ist kein Ordner dieses Rechners. Einen Server macht "
         "„bildkurier-cli sftp check“ zum Ziel.\n"},
    };
    const std::string before = settings({}).out;
    for (const auto& [words, message] : cases) {
        const auto result = settings(words);
        EXPECT_EQ(result.exitStatus, 2);
        EXPECT_EQ(result.err, message);
        EXPECT_EQ(result.out, "");
    }
    EXPECT_EQ(settings({}).out, before);
}

TEST_F(SettingsProgramTest, RefuseADestinationThatIsNoFolder) {
    const std::string file = folder.write("file", "no folder");
    const struct {
        std::string path;
        std::string message;
    } cases[] = {
        {folder.path("none"),
         "Den Ordner „" + folder.path("none") + "“ gibt es nicht; bitte erst anlegen.\n"},
        {file, "„" + file + "“ ist kein lesbarer Ordner.\n"},
        {file + "/below", "Den Ordner „" + file + "/below“ gibt es nicht; bitte erst anlegen.\n"},
    };
    const std::string before = settings({}).out;
    for (const auto& [path, message] : cases) {
        const auto result = settings({"dest", path});
        EXPECT_EQ(result.exitStatus, 4);
        EXPECT_EQ(result.err, message);
    }
    EXPECT_EQ(settings({}).out, before);
}

TEST_F(SettingsProgramTest, MakesADestinationThatAnImportUses) {
    add("IMG_1.JPG", "one");
    std::filesystem::create_directory(destination);
    ASSERT_EQ(settings({"dest", destination}).exitStatus, 0);
    ASSERT_EQ(settings({"byType", "false"}).exitStatus, 0);
    const auto result = run({"import", "--card", card}, environment);
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(tree(destination), (Tree{{"IMG_1.JPG", "one"}}));

    std::filesystem::remove_all(destination);
    const auto gone = run({"import", "--card", card}, environment);
    EXPECT_EQ(gone.exitStatus, 4);
    EXPECT_TRUE(gone.err.contains("ist nicht mehr da")) << gone.err;
    EXPECT_FALSE(std::filesystem::exists(destination));
    const auto wanted = run({"import", "--card", card, "--to", destination}, environment);
    EXPECT_EQ(wanted.exitStatus, 0) << wanted.err;
    EXPECT_EQ(tree(destination), (Tree{{"IMG_1.JPG", "one"}}));
}

TEST_F(SettingsProgramTest, MakeAFolderTheDestinationInPlaceOfAServer) {
    ASSERT_EQ(settings({"destinationKind", "sftp"}).exitStatus, 0);
    ASSERT_EQ(settings({"dest", card}).exitStatus, 0);
    EXPECT_EQ(value("destinationKind"), "destinationKind = folder\n");
    EXPECT_EQ(value("dest"), "dest = " + card + "\n");
}

TEST_F(SettingsProgramTest, SayWhenTheyCannotBeKept) {
    const auto result = run({"settings", "byDate", "true"},
                            {{"XDG_CONFIG_HOME", folder.write("occupied", "a file")}});
    EXPECT_EQ(result.exitStatus, 4);
    EXPECT_EQ(result.err, "Die Einstellung lässt sich nicht speichern.\n");
    EXPECT_EQ(result.out, "");
}

TEST_F(SettingsProgramTest, TakeADestinationThatIsNoWholePathForNone) {
    for (const std::string path : {"", "bilder"}) {
        for (const std::string key : {"dest", "destBookmark"}) {
            folder.write("config/bildkurier/bildkurier.conf", "[General]\n" + key + "=" + path);
            EXPECT_TRUE(value("dest").ends_with("/Pictures/Bildkurier\n")) << value("dest");
        }
    }
}

TEST_F(SettingsProgramTest, AreNotChangedByWhatAnImportIsToldOtherwise) {
    add("IMG_1.JPG", "one");
    ASSERT_EQ(settings({"dest", card}).exitStatus, 0);
    ASSERT_EQ(settings({"autoImportEnabled", "true"}).exitStatus, 0);
    const std::string before = settings({}).out;
    const auto result = run({"import", "--card", card, "--to", destination, "--by-date",
                             "--no-by-type", "--since", "2024-01-01"},
                            environment);
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    EXPECT_EQ(tree(destination), (Tree{{"2024-07-01/", ""}, {"2024-07-01/IMG_1.JPG", "one"}}));
    EXPECT_EQ(settings({}).out, before);
}

}  // namespace
}  // namespace bildkurier
