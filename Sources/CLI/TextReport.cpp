// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TextReport.h"

#include "CameraName.h"
#include "FileName.h"
#include "Formatting.h"
#include "ProofSummary.h"

#include <fmt/format.h>

#include <cstdio>

namespace bildkurier {

void TextReport::cameras(std::span<const std::shared_ptr<Camera>> cameras) {
    for (const auto& camera : cameras) {
        print(fmt::format("{}  {}{}", displayName(*camera),
                          displayText(camera->identity().value_or("ohne Kennung")),
                          camera->isIdentityFinal() ? "" : "  (vorläufig)"));
    }
}

void TextReport::plan(const Plan& plan) {
    print(plan.status);
    for (const TypeSummary& type : plan.types) {
        print(fmt::format("  {:<8} {:>6}  {:>10}", displayText(type.ext), type.count,
                          formatBytes(type.bytes)));
    }
}

void TextReport::importing(const Plan& plan) {
    if (plan.files == 0) return print(plan.status);
    bar_.begin(plan.bytes);
}

void TextReport::log(const std::string& line) { print(line); }

void TextReport::status(const std::string& status) { print(status); }

void TextReport::progress(const ImportRunner::Progress& progress) { bar_.progress(progress); }

void TextReport::speed(const SpeedMeter::Reading& speed) { bar_.draw(speed); }

void TextReport::finished(const ImportRunner::Progress& /*progress*/, bool /*cancelled*/) {
    bar_.erase();
}

void TextReport::comparing(const CardProof::Outcome& all) { bar_.begin(all.bytes); }

void TextReport::finding(const CardProof::Finding& finding) { print(findingLine(finding)); }

void TextReport::verified(const CardProof::Outcome& outcome) {
    bar_.erase();
    print(proofSummary(outcome));
}

void TextReport::error(const std::string& message) {
    bar_.erase();
    std::fprintf(stderr, "%s\n", message.c_str());
}

void TextReport::print(const std::string& line) {
    const bool stood = bar_.erase();
    std::fprintf(stdout, "%s\n", line.c_str());
    std::fflush(stdout);
    if (stood) bar_.redraw();
}

}  // namespace bildkurier
