// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportOutput.h"

#include <regex>
#include <sstream>

namespace bildkurier {
namespace {

std::optional<ImportOutput::Summary> summaryIn(const std::string& line) {
    static const std::regex form(
        R"(Fertig: (\d+) geladen \([^)]*\)(, Ø [^,]*(,\d+ .?B/s)?)?(, (\d+) fehlgeschlagen)?(, abgebrochen)?)");
    std::smatch parts;
    if (!std::regex_match(line, parts, form)) return {};
    return ImportOutput::Summary{.loaded = std::stol(parts[1]),
                                 .failed = parts[5].matched ? std::stol(parts[5]) : 0,
                                 .cancelled = parts[6].matched};
}

}  // namespace

ImportOutput::ImportOutput(const std::string& text) {
    const std::string success = "✓ ";
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(success)) {
            const auto end = line.rfind("  (");
            saved.push_back(line.substr(success.size(), end - success.size()));
        } else if (line.starts_with("✗ ") || line.starts_with("Kann Ordner nicht anlegen: ")) {
            failed.push_back(line);
        } else if (line.starts_with("ℹ︎ ")) {
            renamed.push_back(line);
        } else {
            summary = summaryIn(line);
        }
    }
}

}  // namespace bildkurier
