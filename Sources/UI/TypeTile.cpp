// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TypeTile.h"

#include "FileName.h"
#include "Formatting.h"
#include "WindowText.h"

#include <map>
#include <string>

namespace bildkurier {

QString symbolFor(const std::string& ext) {
    static const std::map<std::string, QString> symbols = {
        {"CR3", "camera.aperture"},
        {"CR2", "camera.aperture"},
        {"DNG", "camera.aperture"},
        {"JPG", "photo"},
        {"HIF", "photo"},
        {"HEIC", "photo"},
        {"MP4", "film"},
        {"MOV", "film"},
        {"CRM", "film"},
        {"WAV", "waveform"},
    };
    const auto found = symbols.find(ext);
    return found == symbols.end() ? QStringLiteral("doc") : found->second;
}

TypeTile::TypeTile(const TypeSummary& summary)
    : symbol(symbolFor(summary.ext)),
      //: Kachel für Dateien ohne Endung
      name(summary.ext.empty() ? QObject::tr("Sonstige") : windowText(displayText(summary.ext))),
      count(countText(summary.count)),
      size(windowText(formatBytes(summary.bytes))) {}

QString TypeTile::label() const { return QObject::tr("%1: %2 (%3)").arg(name, count, size); }

}  // namespace bildkurier
