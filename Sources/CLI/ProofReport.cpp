// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProofReport.h"

#include "FileName.h"
#include "ProofSummary.h"

#include <fmt/format.h>

namespace bildkurier {

void tellOf(CardProof& proof, Report& report) {
    proof.onNewServer = [&report](const std::string& fingerprint) {
        report.newServer(fingerprint);
    };
    proof.onCaution = [&report](const std::string& caution) { report.log("ℹ︎ " + caution); };
    proof.onUnreadable = [&report](const std::string& folder) {
        report.log(fmt::format(
            "ℹ︎ Am Ziel ist der Ordner {} nicht lesbar: Was darin liegt, gilt als fehlend.",
            displayText(folder)));
    };
    proof.onComparing = [&report](const CardProof::Outcome& all) { report.comparing(all); };
    proof.onProgress = [&report](const ImportRunner::Progress& progress,
                                 const SpeedMeter::Reading& speed) {
        report.progress(progress);
        report.speed(speed);
    };
    proof.onFinding = [&report](const CardProof::Finding& finding) { report.finding(finding); };
}

void tellOf(const CardProof::Outcome& outcome, Report& report) {
    const std::string others = othersLine(outcome.others);
    if (!others.empty()) report.log(others);
    report.verified(outcome);
}

}  // namespace bildkurier
