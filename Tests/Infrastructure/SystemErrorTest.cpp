// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SystemError.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>

namespace bildkurier {

TEST(SystemError, SaysInGermanWhatHappened) {
    const struct {
        int code;
        std::string message;
    } cases[] = {
        {ENOSPC, "Auf dem Volume ist kein Platz mehr frei"},
        {EDQUOT, "Das Kontingent auf dem Volume ist aufgebraucht"},
        {EACCES, "Die Zugriffsrechte reichen nicht aus"},
        {EPERM, "Der Vorgang ist nicht erlaubt"},
        {EROFS, "Das Volume lässt sich nur lesen"},
        {EIO, "Das Volume meldet einen Ein- oder Ausgabefehler"},
        {ENODEV, "Das Gerät ist nicht mehr da"},
        {ENXIO, "Das Gerät ist nicht mehr da"},
        {ENOMEDIUM, "Im Gerät liegt kein Medium"},
        {ENOENT, "Die Datei oder der Ordner ist nicht vorhanden"},
        {EEXIST, "Eine Datei oder ein Ordner dieses Namens existiert schon"},
        {ENOTDIR, "Im Pfad steht eine Datei, wo ein Ordner sein müsste"},
        {EISDIR, "Dort liegt ein Ordner statt einer Datei"},
        {ENOTEMPTY, "Der Ordner ist nicht leer"},
        {ENAMETOOLONG, "Der Name ist für das Volume zu lang"},
        {EILSEQ, "Das Volume nimmt den Namen oder den Vorgang nicht an"},
        {EINVAL, "Das Volume nimmt den Namen oder den Vorgang nicht an"},
        {ELOOP, "Im Pfad steht ein symbolischer Link, dem nicht gefolgt wird"},
        {EXDEV, "Quelle und Ziel liegen auf verschiedenen Volumes"},
        {EFBIG, "Die Datei ist für das Volume zu groß"},
        {EMLINK, "Das Volume kann keine weiteren Einträge anlegen"},
        {EBUSY, "Die Datei oder das Gerät wird gerade benutzt"},
        {ETXTBSY, "Die Datei oder das Gerät wird gerade benutzt"},
        {EAGAIN, "Das Volume ist gerade nicht bereit"},
        {EMFILE, "Es sind zu viele Dateien geöffnet"},
        {ENFILE, "Es sind zu viele Dateien geöffnet"},
        {ENOMEM, "Der Arbeitsspeicher reicht nicht aus"},
        {ENOSYS, "Das Volume unterstützt den Vorgang nicht"},
        {EOPNOTSUPP, "Das Volume unterstützt den Vorgang nicht"},
        {ESTALE, "Die Datei oder der Ordner wurde unterwegs ausgetauscht"},
        {ETIMEDOUT, "Das Volume hat nicht rechtzeitig geantwortet"},
        {EHOSTDOWN, "Der Server ist nicht erreichbar"},
        {EHOSTUNREACH, "Der Server ist nicht erreichbar"},
        {ENETDOWN, "Das Netzwerk ist nicht erreichbar"},
        {ENETUNREACH, "Das Netzwerk ist nicht erreichbar"},
        {ENOTCONN, "Die Verbindung zum Volume ist abgebrochen"},
        {ECONNREFUSED, "Die Verbindung zum Volume ist abgebrochen"},
        {ECONNRESET, "Die Verbindung zum Volume ist abgebrochen"},
        {ECONNABORTED, "Die Verbindung zum Volume ist abgebrochen"},
        {ECANCELED, "Der Vorgang wurde abgebrochen"},
    };
    for (const auto& [code, message] : cases) EXPECT_EQ(systemError(code).message, message) << code;
}

TEST(SystemError, NamesTheNumberOfAnythingElse) {
    EXPECT_EQ(systemError(EDOM).message, "Das System meldet Fehler 33");
    EXPECT_EQ(systemError(12345).message, "Das System meldet Fehler 12345");
}

TEST(SystemError, IsNeverEmptyAndFitsBehindAColon) {
    for (int code = 0; code < 200; ++code) {
        const std::string message = systemError(code).message;
        ASSERT_FALSE(message.empty()) << code;
        EXPECT_FALSE(message.ends_with('.')) << message;
    }
}

}  // namespace bildkurier
