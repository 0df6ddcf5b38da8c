// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpComplaint.h"

#include <gtest/gtest.h>

#include <string>

namespace bildkurier {
namespace {

TEST(MeaningOf, PutsIntoGermanWhatTheClientComplainsOf) {
    const struct {
        std::string_view complaint;
        std::string_view meaning;
    } cases[] = {
        {"Host key verification failed.", "Der Schlüssel des Servers ist nicht der bekannte"},
        {"anna@nas: Permission denied (publickey,password).",
         "Der Server lässt die Anmeldung mit diesem Schlüssel nicht zu"},
        {"Received disconnect from ::1 port 22:2: Too many authentication failures",
         "Der Server lässt die Anmeldung mit diesem Schlüssel nicht zu"},
        {"ssh: Could not resolve hostname nas: Name or service not known",
         "Der Rechner ist unter diesem Namen nicht zu finden"},
        {"ssh: connect to host nas port 1: Connection refused",
         "Der Rechner nimmt an diesem Port keine Verbindung an"},
        {"ssh: connect to host nas port 22: Connection timed out", "Der Rechner antwortet nicht"},
        {"Connection timed out during banner exchange", "Der Rechner antwortet nicht"},
        {"Connection to 127.0.0.1 port 22 timed out", "Der Rechner antwortet nicht"},
        {"ssh: connect to host nas port 22: No route to host",
         "Der Rechner ist im Netz nicht zu erreichen"},
        {"ssh: connect to host nas port 22: Network is unreachable",
         "Der Rechner ist im Netz nicht zu erreichen"},
        {"ssh: connect to host nas port 22: Permission denied",
         "Dieser Rechner lässt die Verbindung nicht zu"},
        {"ssh: connect to host nas port 22: Operation not permitted",
         "Dieser Rechner lässt die Verbindung nicht zu"},
        {"Unable to negotiate with ::1 port 22: no matching host key type found. Their offer: x",
         "Der Server und dieser Rechner haben kein Verfahren gemeinsam"},
        {"subsystem request failed on channel 0", "Der Server bietet kein SFTP an"},
        {"Received message too long 1416128883", "Der Server antwortet mit etwas anderem als SFTP"},
        {"Connection reset by 127.0.0.1 port 22", "Die Verbindung ist abgebrochen"},
        {"Connection lost", "Die Verbindung ist abgebrochen"},
        {"Connection to nas closed by remote host.", "Die Verbindung ist abgebrochen"},
        {"kex_exchange_identification: Connection closed by remote host",
         "Die Verbindung ist abgebrochen"},
        {"kex_exchange_identification: read: Connection reset by peer",
         "Die Verbindung ist abgebrochen"},
        {"client_loop: send disconnect: Broken pipe", "Die Verbindung ist abgebrochen"},
        {"stat local \"/s/A\": No such file or directory",
         "Auf diesem Rechner ist die Datei nicht lesbar"},
        {"local open \"/s/A\": Permission denied", "Auf diesem Rechner ist die Datei nicht lesbar"},
        {"remote mkdir \"/a\": Permission denied", "Der Server verweigert den Zugriff"},
        {"dest open \"/a\": Read-only file system", "Der Server verweigert den Zugriff"},
        {"stat remote: No such file or directory",
         "Auf dem Server fehlt der Ordner oder die Datei"},
        {"realpath /a: No such file", "Auf dem Server fehlt der Ordner oder die Datei"},
        {"Can't change directory: \"/a\" is not a directory",
         "Dort liegt auf dem Server eine Datei und kein Ordner"},
        {"write remote \"/a\": No space left on device", "Auf dem Server ist kein Platz mehr"},
        {"write remote \"/a\": Disk quota exceeded", "Auf dem Server ist kein Platz mehr"},
        {"write remote \"/a\": Failure",
         "Der Server nimmt nicht mehr an; vielleicht ist dort kein Platz mehr"},
        {"remote mkdir \"/a\": Failure",
         "Der Server kann den Ordner nicht anlegen; vielleicht liegt dort eine Datei dieses "
         "Namens, oder es ist kein Platz mehr"},
        {"remote rename \"/a\" to \"/b\": Failure", "Der Server meldet einen Fehler"},
        {"remote statvfs(\"/a\"): Operation unsupported", "Der Server kann das nicht"},
    };
    for (const auto& [complaint, meaning] : cases) EXPECT_EQ(meaningOf(complaint), meaning);
}

TEST(MeaningOf, TakesNoNameForAComplaint) {
    EXPECT_EQ(meaningOf("remote open \"/Broken pipe\": Failure"), "Der Server meldet einen Fehler");
    EXPECT_EQ(meaningOf("remote open \"/Host key verification failed: x\""), std::nullopt);
    EXPECT_EQ(meaningOf("Noch kein ssh-Schlüssel"), std::nullopt);
    EXPECT_EQ(meaningOf(""), std::nullopt);
}

TEST(CauseOf, IsWhyAFolderThatIsMissingCouldNotBeMade) {
    const std::string above = "sftp> -mkdir \"/a\"\nremote mkdir \"/a\": Failure\n";
    const std::string below = "remote mkdir \"/a/b/c\": No such file or directory\n";
    for (const std::string missing :
         {"stat remote: No such file or directory", "realpath /a/b/c: No such file"}) {
        for (const std::string cause :
             {"remote mkdir \"/a/b\": Failure", "remote mkdir \"/a/b\": Permission denied",
              "remote mkdir \"/a/b\": Disk quota exceeded"}) {
            EXPECT_EQ(causeOf(missing, above + cause + "\r\n" + below + missing), cause);
        }
    }
}

TEST(CauseOf, IsTheComplaintItselfWhereNothingWasToBeMade) {
    const std::string missing = "stat remote: No such file or directory";
    EXPECT_EQ(causeOf(missing, missing), missing);
    EXPECT_EQ(causeOf(missing, "x: Permission denied\n" + missing), missing);
    EXPECT_EQ(causeOf(missing, "remote mkdir \"/a\": No such file or directory\n" + missing),
              missing);
    const std::string closed = "Connection reset by ::1 port 22";
    EXPECT_EQ(causeOf(closed, "remote mkdir \"/a\": Failure\n" + closed), closed);
}

}  // namespace
}  // namespace bildkurier
