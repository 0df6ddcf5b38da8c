// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SystemError.h"

#include <fmt/format.h>

#include <cerrno>
#include <string_view>
#include <system_error>

namespace bildkurier {

namespace {

/// Empty for a value that users hardly meet.
std::string_view clause(int code) {
    switch (code) {
        case ENOSPC:
            return "Auf dem Volume ist kein Platz mehr frei";
        case EDQUOT:
            return "Das Kontingent auf dem Volume ist aufgebraucht";
        case EACCES:
            return "Die Zugriffsrechte reichen nicht aus";
        case EPERM:
            return "Der Vorgang ist nicht erlaubt";
        case EROFS:
            return "Das Volume lässt sich nur lesen";
        case EIO:
            return "Das Volume meldet einen Ein- oder Ausgabefehler";
        case ENODEV:
        case ENXIO:
            return "Das Gerät ist nicht mehr da";
        case ENOMEDIUM:
            return "Im Gerät liegt kein Medium";
        case ENOENT:
            return "Die Datei oder der Ordner ist nicht vorhanden";
        case EEXIST:
            return "Eine Datei oder ein Ordner dieses Namens existiert schon";
        case ENOTDIR:
            return "Im Pfad steht eine Datei, wo ein Ordner sein müsste";
        case EISDIR:
            return "Dort liegt ein Ordner statt einer Datei";
        case ENOTEMPTY:
            return "Der Ordner ist nicht leer";
        case ENAMETOOLONG:
            return "Der Name ist für das Volume zu lang";
        case EILSEQ:
        case EINVAL:
            return "Das Volume nimmt den Namen oder den Vorgang nicht an";
        case ELOOP:
            return "Im Pfad steht ein symbolischer Link, dem nicht gefolgt wird";
        case EXDEV:
            return "Quelle und Ziel liegen auf verschiedenen Volumes";
        case EFBIG:
            return "Die Datei ist für das Volume zu groß";
        case EMLINK:
            return "Das Volume kann keine weiteren Einträge anlegen";
        case EBUSY:
        case ETXTBSY:
            return "Die Datei oder das Gerät wird gerade benutzt";
        case EAGAIN:
            return "Das Volume ist gerade nicht bereit";
        case EMFILE:
        case ENFILE:
            return "Es sind zu viele Dateien geöffnet";
        case ENOMEM:
            return "Der Arbeitsspeicher reicht nicht aus";
        case ENOSYS:
        case EOPNOTSUPP:
            return "Das Volume unterstützt den Vorgang nicht";
        case ESTALE:
            return "Die Netzwerkfreigabe hat den Ordner nicht mehr";
        case ETIMEDOUT:
            return "Das Volume hat nicht rechtzeitig geantwortet";
        case EHOSTDOWN:
        case EHOSTUNREACH:
            return "Der Server ist nicht erreichbar";
        case ENETDOWN:
        case ENETUNREACH:
            return "Das Netzwerk ist nicht erreichbar";
        case ENOTCONN:
        case ECONNREFUSED:
        case ECONNRESET:
        case ECONNABORTED:
            return "Die Verbindung zum Volume ist abgebrochen";
        case ECANCELED:
            return "Der Vorgang wurde abgebrochen";
        default:
            return {};
    }
}

}  // namespace

Error systemError(int code) {
    if (const auto known = clause(code); !known.empty()) return {std::string(known)};
    return {fmt::format("Das System meldet Fehler {} ({})", code,
                        std::generic_category().message(code))};
}

}  // namespace bildkurier
