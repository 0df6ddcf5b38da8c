// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpComplaint.h"

#include "SftpOutput.h"

#include <algorithm>
#include <ranges>

namespace bildkurier {
namespace {

constexpr std::string_view notMade = "remote mkdir \"";
constexpr std::string_view accessDenied = ": Permission denied";
constexpr std::string_view nothingThere = ": No such file or directory";
constexpr std::string_view nothingThereEither = ": No such file";  // in the server's own words

/// Names, which may be anything, stand between the two.
struct Complaint {
    std::string_view beginning;
    std::string_view end;
    std::string_view meaning;
};

constexpr std::string_view noLogin = "Der Server lässt die Anmeldung mit diesem Schlüssel nicht zu";
constexpr std::string_view unreachable = "Der Rechner ist im Netz nicht zu erreichen";
constexpr std::string_view notLetOut = "Dieser Rechner lässt die Verbindung nicht zu";
constexpr std::string_view noAnswer = "Der Rechner antwortet nicht";
constexpr std::string_view noAccess = "Der Server verweigert den Zugriff";
constexpr std::string_view isMissing = "Auf dem Server fehlt der Ordner oder die Datei";
constexpr std::string_view noRoomLeft = "Auf dem Server ist kein Platz mehr";
constexpr std::string_view perhapsTaken =
    "Der Server kann den Ordner nicht anlegen; vielleicht liegt dort eine Datei dieses Namens, oder"
    " es ist kein Platz mehr";
constexpr std::string_view perhapsFull =
    "Der Server nimmt nicht mehr an; vielleicht ist dort kein Platz mehr";

// The first that fits counts.
constexpr Complaint complaints[] = {
    {"Host key verification failed", "", "Der Schlüssel des Servers ist nicht der bekannte"},
    {"", ": Too many authentication failures", noLogin},
    {"ssh: Could not resolve hostname ", "", "Der Rechner ist unter diesem Namen nicht zu finden"},
    {"ssh: ", ": Connection refused", "Der Rechner nimmt an diesem Port keine Verbindung an"},
    {"ssh: ", " timed out", noAnswer},
    {"Connection timed out", "", noAnswer},
    {"Connection to ", " timed out", noAnswer},
    {"ssh: ", ": No route to host", unreachable},
    {"ssh: ", ": Network is unreachable", unreachable},
    {"ssh: ", accessDenied, notLetOut},
    {"ssh: ", ": Operation not permitted", notLetOut},
    {"Unable to negotiate ", "", "Der Server und dieser Rechner haben kein Verfahren gemeinsam"},
    {"subsystem request failed ", "", "Der Server bietet kein SFTP an"},
    {"Received message too long ", "", "Der Server antwortet mit etwas anderem als SFTP"},
    {"Connection reset", "", lostConnection},
    {"Connection lost", "", lostConnection},
    {"Connection to ", " closed by remote host.", lostConnection},
    {"", ": Connection closed by remote host", lostConnection},
    {"", "Connection reset by peer", lostConnection},
    {"", "Broken pipe", lostConnection},
    {"stat local ", "", "Auf diesem Rechner ist die Datei nicht lesbar"},
    {"local open ", "", "Auf diesem Rechner ist die Datei nicht lesbar"},
    {"", accessDenied, noAccess},
    {"", ": Read-only file system", noAccess},
    {"", nothingThere, isMissing},
    {"", nothingThereEither, isMissing},
    {"", " is not a directory", "Dort liegt auf dem Server eine Datei und kein Ordner"},
    {"", ": No space left on device", noRoomLeft},
    {"", ": Disk quota exceeded", noRoomLeft},
    {"write remote ", ": Failure", perhapsFull},
    {notMade, ": Failure", perhapsTaken},
    {"", ": Failure", "Der Server meldet einen Fehler"},
    {"", ": Operation unsupported", "Der Server kann das nicht"},
};

bool isSuchA(const Complaint& known, std::string_view line) {
    return line.size() >= known.beginning.size() + known.end.size() &&
           line.starts_with(known.beginning) && line.ends_with(known.end);
}

bool refusesKey(std::string_view line) {
    return line.contains("Permission denied (") && line.ends_with(").");
}

bool saysNothingThere(std::string_view line) {
    return line.ends_with(nothingThere) || line.ends_with(nothingThereEither);
}

std::string_view withoutReturn(std::string_view line) {
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

}  // namespace

std::optional<std::string_view> meaningOf(std::string_view line) {
    if (refusesKey(line)) return noLogin;
    const auto* const known = std::ranges::find_if(
        complaints, [line](const Complaint& one) { return isSuchA(one, line); });
    if (known == std::end(complaints)) return {};
    return known->meaning;
}

std::string_view causeOf(std::string_view line, std::string_view output) {
    if (!saysNothingThere(line)) return line;
    // What could not be made is missing afterwards, and so is what was to be made in there.
    for (const auto other : std::views::reverse(nonEmptyLines(output))) {
        const auto complaint = withoutReturn(other);
        if (complaint.starts_with(notMade) && !saysNothingThere(complaint)) return complaint;
    }
    return line;
}

}  // namespace bildkurier
