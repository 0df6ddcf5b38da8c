// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SettingsHelp.h"

#include "SettingsKey.h"

#include <fmt/format.h>

namespace bildkurier {

std::string settingsHelp() {
    using Key = SettingsKey;
    const struct {
        const char* key;
        const char* values;
        const char* meaning;
    } settings[] = {
        {Key::destination, "ORDNER", "Zielordner, den es schon gibt"},
        {Key::destinationKind, "folder|sftp", "ob der Ordner oder der Server das Ziel ist"},
        {Key::sftpUser, "TEXT", "Benutzer auf dem Server"},
        {Key::sftpHost, "TEXT", "Server, auch RECHNER:PORT; geprüft nur mit sftp check"},
        {Key::sftpPath, "TEXT", "Ordner auf dem Server"},
        {Key::byDate, "true|false", "in Ordner je Aufnahmetag sortieren"},
        {Key::byType, "true|false", "in Ordner je Dateityp sortieren"},
        {Key::useFromDate, "true|false", "Zeitraum beschränken; nur im Fenster"},
        {Key::fromDay, "JJJJ-MM-TT", "erster Tag des Zeitraums; nur im Fenster"},
        {Key::autoImportEnabled, "true|false", "die vertraute Kamera von selbst laden"},
        {Key::autoImportCameraIdentity, "TEXT", "Kennung der vertrauten Kamera"},
        {Key::autoImportCameraName, "TEXT", "Name der vertrauten Kamera"},
    };
    std::string help = "Einstellungen, die auch für das Fenster gelten:";
    for (const auto& [key, values, meaning] : settings)
        help += fmt::format("\n  {:<26}{:<13}{}", key, values, meaning);
    return help;
}

}  // namespace bildkurier
