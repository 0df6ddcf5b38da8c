// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ProgressBar.h"
#include "Report.h"

namespace bildkurier {

/// Lines for people: log and summary on standard output, and a progress bar on standard error
/// when that is a terminal.
class TextReport final : public Report {
public:
    void cameras(std::span<const std::shared_ptr<Camera>> cameras) override;
    void plan(const Plan& plan) override;
    void importing(const Plan& plan) override;
    void log(const std::string& line) override;
    void status(const std::string& status) override;
    void progress(const ImportRunner::Progress& progress) override;
    void speed(const SpeedMeter::Reading& speed) override;
    void finished(const ImportRunner::Progress& progress, bool cancelled) override;
    void comparing(const CardProof::Outcome& all) override;
    void finding(const CardProof::Finding& finding) override;
    void verified(const CardProof::Outcome& outcome) override;
    void error(const std::string& message) override;

private:
    void print(const std::string& line);

    ProgressBar bar_;
};

}  // namespace bildkurier
