// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportSummary.h"

#include "Formatting.h"

#include <fmt/format.h>

namespace bildkurier {

std::string importSummary(const ImportRunner::Progress& progress, double averageSpeed,
                          bool cancelled) {
    auto line =
        fmt::format("Fertig: {} geladen ({})", progress.done, formatBytes(progress.bytesDone));
    if (averageSpeed > 0) line += ", Ø " + formatSpeed(averageSpeed);
    if (progress.failed > 0) line += fmt::format(", {} fehlgeschlagen", progress.failed);
    if (cancelled) line += ", abgebrochen";
    return line;
}

}  // namespace bildkurier
