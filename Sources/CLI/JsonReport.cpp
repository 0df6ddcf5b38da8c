// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "JsonReport.h"

#include "ProofSummary.h"

#include <nlohmann/json.hpp>

#include <cstdio>

namespace bildkurier {

namespace {

using Json = nlohmann::ordered_json;

void print(const Json& event) {
    const std::string line = event.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
    std::fputs(line.c_str(), stdout);
    std::fflush(stdout);
}

std::string kindOf(const Proof& proof) {
    if (proof.kind == Proof::Kind::twin) return "twin";
    return proof.kind == Proof::Kind::notReadable ? "unproved" : "missing";
}

}  // namespace

void JsonReport::cameras(std::span<const std::shared_ptr<Camera>> cameras) {
    for (const auto& camera : cameras) {
        const auto name = camera->name();
        const auto identity = camera->isIdentityFinal() ? camera->identity() : std::nullopt;
        print({{"event", "camera"},
               {"name", name ? Json(*name) : Json(nullptr)},
               {"identity", identity ? Json(*identity) : Json(nullptr)}});
    }
}

void JsonReport::plan(const Plan& plan) {
    Json types = Json::array();
    for (const TypeSummary& type : plan.types) {
        types.push_back({{"ext", type.ext}, {"count", type.count}, {"bytes", type.bytes}});
    }
    print({{"event", "plan"}, {"files", plan.files}, {"bytes", plan.bytes}, {"types", types}});
}

void JsonReport::importing(const Plan& plan) { JsonReport::plan(plan); }

void JsonReport::log(const std::string& line) { print({{"event", "log"}, {"line", line}}); }

void JsonReport::status(const std::string& status) {
    print({{"event", "status"}, {"status", status}});
}

void JsonReport::progress(const ImportRunner::Progress& progress) {
    print({{"event", "progress"},
           {"total", progress.total},
           {"done", progress.done},
           {"failed", progress.failed},
           {"bytesDone", progress.bytesDone},
           {"currentName", progress.currentName},
           {"currentBytes", progress.currentBytes},
           {"currentTotal", progress.currentTotal},
           {"isTransferring", progress.isTransferring}});
}

void JsonReport::speed(const SpeedMeter::Reading& /*speed*/) {}

void JsonReport::finished(const ImportRunner::Progress& progress, bool cancelled) {
    print({{"event", "finished"},
           {"total", progress.total},
           {"done", progress.done},
           {"failed", progress.failed},
           {"bytes", progress.bytesDone},
           {"cancelled", cancelled}});
}

void JsonReport::comparing(const CardProof::Outcome& all) {
    print({{"event", "comparing"}, {"files", all.files}, {"bytes", all.bytes}});
}

void JsonReport::finding(const CardProof::Finding& finding) {
    print({{"event", "finding"},
           {"kind", kindOf(finding.proof)},
           {"name", finding.name},
           {"size", finding.size},
           {"line", findingLine(finding)}});
}

void JsonReport::verified(const CardProof::Outcome& outcome) {
    print({{"event", "verified"},
           {"files", outcome.files},
           {"bytes", outcome.bytes},
           {"present", outcome.present},
           {"missing", outcome.missing},
           {"twins", outcome.twins},
           {"unproved", outcome.unproved},
           {"others", outcome.others.count()},
           {"content", outcome.content},
           {"wholeCard", outcome.isWholeCard},
           {"complete", outcome.isComplete()},
           {"line", proofSummary(outcome)}});
}

void JsonReport::error(const std::string& message) {
    print({{"event", "error"}, {"line", message}});
}

}  // namespace bildkurier
