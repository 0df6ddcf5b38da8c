// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProofSummary.h"

#include "FileName.h"
#include "Formatting.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <ranges>
#include <utility>
#include <vector>

namespace bildkurier {

namespace {

using Kind = Proof::Kind;

std::string reason(const Proof& proof) {
    switch (proof.kind) {
        case Kind::present:
            return "ist am Ziel";
        case Kind::missing:
            return "fehlt am Ziel";
        case Kind::otherName:
            return "fehlt am Ziel; ob sie dort mit angehängter Nummer liegt, prüft --content";
        case Kind::tooFew:
            return "ist auf der Karte öfter als am Ziel";
        case Kind::twin:
            return "Zwilling: Was am Ziel so heißt und so groß ist, hat anderen Inhalt";
        case Kind::notReadable:
            return "nicht prüfbar: " + proof.why;
    }
    return {};
}

/// Some of them in brackets, the most frequent first.
std::string examples(const OtherFiles::Counts& counts) {
    constexpr std::size_t most = 3;
    using Count = std::pair<std::string, std::int64_t>;
    std::vector<Count> all(counts.begin(), counts.end());
    std::ranges::stable_sort(all, std::greater(), &Count::second);
    std::vector<std::string> shown;
    for (const auto& name : all | std::views::keys | std::views::take(most))
        shown.push_back(name.empty() ? "ohne Endung" : displayText(name));
    return fmt::format("({}{})", fmt::join(shown, ", "), all.size() > most ? " …" : "");
}

}  // namespace

std::string othersLine(const OtherFiles& others) {
    std::vector<std::string> all;
    if (!others.kinds.empty()) {
        const auto files = OtherFiles::sum(others.kinds);
        all.push_back(fmt::format("{} {} anderer Art {}", files, files == 1 ? "Datei" : "Dateien",
                                  examples(others.kinds)));
    }
    if (!others.hidden.empty()) all.push_back("Verstecktes " + examples(others.hidden));
    return all.empty() ? "" : fmt::format("ℹ︎ Nicht geprüft: {}.", fmt::join(all, ", "));
}

std::string findingLine(const CardProof::Finding& finding) {
    const std::string name = finding.name.empty() ? "(ohne Namen)" : displayText(finding.name);
    return fmt::format("✗ {}  ({}): {}", name, formatBytes(finding.size), reason(finding.proof));
}

std::string proofSummary(const CardProof::Outcome& outcome) {
    if (outcome.hasCardChanged) {
        return "✗ Nicht löschen: Auf der Karte hat sich während der Prüfung etwas geändert; bitte "
               "noch einmal prüfen.";
    }
    if (outcome.files == 0)
        return "✗ Nicht löschen: Auf der Karte ist keine Datei, die zu prüfen wäre.";
    const std::string size = formatBytes(outcome.bytes);
    if (outcome.isComplete() && !outcome.isWholeCard) {
        const auto loaded =
            outcome.files == 1
                ? fmt::format("Die eine geladene Datei ({}) ist", size)
                : fmt::format("Alle {} geladenen Dateien ({}) sind", outcome.files, size);
        return fmt::format(
            "✓ {} am Ziel, Byte für Byte gleich. Die ganze Karte prüft verify --content.", loaded);
    }
    if (outcome.isComplete()) {
        const auto all = outcome.files == 1
                             ? fmt::format("Die eine Datei ({}) ist", size)
                             : fmt::format("Alle {} Dateien ({}) sind", outcome.files, size);
        return outcome.content
                   ? fmt::format("✓ {} am Ziel, Byte für Byte gleich.", all)
                   : fmt::format(
                         "✓ {} dem Namen und der Größe nach am Ziel. Den Inhalt vergleicht "
                         "--content.",
                         all);
    }
    std::vector<std::string> lacks;
    if (outcome.missing > 0) {
        lacks.push_back(
            fmt::format("{} {}", outcome.missing, outcome.missing == 1 ? "fehlt" : "fehlen"));
    }
    if (outcome.twins > 0) lacks.push_back(fmt::format("{} mit anderem Inhalt", outcome.twins));
    if (outcome.unproved > 0) lacks.push_back(fmt::format("{} nicht prüfbar", outcome.unproved));
    return fmt::format("✗ Nicht löschen: am Ziel {} von {} {} ({}), {}.", outcome.present,
                       outcome.files, outcome.files == 1 ? "Datei" : "Dateien", size,
                       fmt::join(lacks, ", "));
}

}  // namespace bildkurier
