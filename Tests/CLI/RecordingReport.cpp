// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "RecordingReport.h"

#include "ProofSummary.h"

#include <fmt/format.h>

namespace bildkurier {

namespace {

std::string described(const Report::Plan& plan) {
    std::string line =
        fmt::format("{}/{} files, {} bytes", plan.files, plan.cameraFiles, plan.bytes);
    for (const auto& type : plan.types) line += fmt::format(", {} {}", type.count, type.ext);
    return line;
}

}  // namespace

void RecordingReport::cameras(std::span<const std::shared_ptr<Camera>> cameras) {
    for (const auto& camera : cameras) lines.push_back("camera: " + camera->id());
}

void RecordingReport::plan(const Plan& plan) { lines.push_back("plan: " + described(plan)); }

void RecordingReport::importing(const Plan& plan) {
    ++importsAnnounced;
    lines.push_back("importing: " + described(plan));
}

void RecordingReport::finished(const ImportRunner::Progress& progress, bool cancelled) {
    lines.push_back(fmt::format("finished: {}/{} done, {} failed{}", progress.done, progress.total,
                                progress.failed, cancelled ? ", cancelled" : ""));
}

void RecordingReport::comparing(const CardProof::Outcome& all) {
    lines.push_back(fmt::format("comparing: {} files, {} bytes", all.files, all.bytes));
}

void RecordingReport::finding(const CardProof::Finding& finding) {
    lines.push_back(findingLine(finding));
}

void RecordingReport::verified(const CardProof::Outcome& outcome) {
    lines.push_back(proofSummary(outcome));
}

}  // namespace bildkurier
