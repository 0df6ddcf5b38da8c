// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Program.h"

#include "CardImport.h"
#include "EventLoop.h"
#include "ExifCaptureDates.h"
#include "ImageCaptureBrowser.h"
#include "ImportLock.h"
#include "InterruptSignals.h"
#include "JsonReport.h"
#include "LocalFileStore.h"
#include "MountedCards.h"
#include "TextReport.h"
#include "ThreadPool.h"

#include <memory>
#include <optional>

namespace bildkurier {

namespace {

std::unique_ptr<Report> makeReport(bool json) {
    if (json) return std::make_unique<JsonReport>();
    return std::make_unique<TextReport>();
}

}  // namespace

ExitStatus runProgram(const CommandLine& commandLine) {
    EventLoop loop;
    const auto report = makeReport(commandLine.json);
    ImportLock lock;
    if (commandLine.command == CommandLine::Command::import) {
        if (const auto acquired = lock.acquire(); !acquired) {
            report->error(acquired.error().message);
            return ExitStatus::destinationUnusable;
        }
    }
    const auto store = std::make_shared<LocalFileStore>();
    std::shared_ptr<CardImport> job;
    std::optional<InterruptSignals> signals(std::in_place, loop, [&job] { job->interrupt(); });
    std::optional<ThreadPool> pool(std::in_place);

    ExitStatus status = ExitStatus::success;
    job = std::make_shared<CardImport>(commandLine, store, loop, *pool, *report,
                                       [&](ExitStatus ended) {
                                           status = ended;
                                           loop.stop();
                                       });
    auto browser = std::make_shared<ImageCaptureBrowser>(std::make_unique<MountedCards>(
        loop, *pool, std::make_shared<ExifCaptureDates>(),
        MountedCards::Options{.folders = commandLine.cards, .volumes = commandLine.cards.empty()}));
    browser->onAttachedCamerasReported = [&job] { job->begin(); };
    browser->start(job);
    loop.run();

    // From here on the signals end the program again, should a file system hang.
    signals.reset();
    browser.reset();
    pool.reset();
    if (job->abandonedImport()) {
        store->removeItem(store->stagingDirectory(Url::file(commandLine.destination)));
    }
    return status;
}

}  // namespace bildkurier
