// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardPlan.h"

#include "CardImport.h"
#include "EventLoop.h"
#include "ImageCaptureBrowser.h"
#include "LocalFileStore.h"
#include "MountedCards.h"
#include "ThreadPool.h"

#include <fstream>
#include <memory>
#include <stdexcept>

namespace bildkurier {

namespace {

/// Hears only the plan.
class PlanListener final : public Report {
public:
    std::int64_t files = -1;

    void cameras(std::span<const std::shared_ptr<Camera>> /*cameras*/) override {}
    void plan(const Plan& plan) override { files = plan.files; }
    void importing(const Plan& /*plan*/) override {}
    void log(const std::string& /*line*/) override {}
    void progress(const ImportRunner::Progress& /*progress*/) override {}
    void speed(const SpeedMeter::Reading& /*speed*/) override {}
    void finished(const ImportRunner::Progress& /*progress*/, double /*averageSpeed*/,
                  bool /*cancelled*/) override {}
    void error(const std::string& message) override { throw std::runtime_error(message); }
};

}  // namespace

std::int64_t planCard(const std::string& card, const std::string& destination) {
    EventLoop loop;
    PlanListener report;
    ThreadPool pool;
    const auto job = std::make_shared<CardImport>(
        CommandLine{
            .command = CommandLine::Command::plan, .cards = {card}, .destination = destination},
        std::make_shared<LocalFileStore>(), loop, pool, report, [&](ExitStatus) { loop.stop(); });
    const auto browser = std::make_shared<ImageCaptureBrowser>(std::make_unique<MountedCards>(
        loop, pool, nullptr, MountedCards::Options{.folders = {card}, .volumes = false}));
    browser->onAttachedCamerasReported = [&] { job->begin(); };
    browser->start(job);
    loop.run();
    return report.files;
}

std::int64_t peakMemory() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
        if (word != "VmHWM:") continue;
        std::int64_t kibibytes = 0;
        status >> kibibytes;
        return kibibytes * 1024;
    }
    throw std::runtime_error("no VmHWM in /proc/self/status");
}

}  // namespace bildkurier
