// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Report.h"

#include <string>
#include <vector>

namespace bildkurier {

/// Keeps all it is told, one line each.
class RecordingReport final : public Report {
public:
    std::vector<std::string> lines;
    int progressReports = 0;
    bool progressCameFirst = false;  ///< before anything was said of an import
    int speedReports = 0;
    int importsAnnounced = 0;

    void cameras(std::span<const std::shared_ptr<Camera>> cameras) override;
    void plan(const Plan& plan) override;
    void importing(const Plan& plan) override;
    void log(const std::string& line) override { lines.push_back(line); }
    void status(const std::string& status) override { lines.push_back("status: " + status); }
    void progress(const ImportRunner::Progress& /*progress*/) override {
        ++progressReports;
        if (importsAnnounced == 0) progressCameFirst = true;
    }
    void speed(const SpeedMeter::Reading& /*speed*/) override { ++speedReports; }
    void finished(const ImportRunner::Progress& progress, bool cancelled) override;
    void comparing(const CardProof::Outcome& all) override;
    void finding(const CardProof::Finding& finding) override;
    void verified(const CardProof::Outcome& outcome) override;
    void error(const std::string& message) override { lines.push_back("error: " + message); }
};

}  // namespace bildkurier
