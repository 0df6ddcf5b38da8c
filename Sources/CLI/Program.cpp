// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Program.h"

#include "AppContainer.h"
#include "EventLoop.h"
#include "GivenFile.h"
#include "ImportCommand.h"
#include "InterruptSignals.h"
#include "JsonReport.h"
#include "KeyCommand.h"
#include "ServerCommand.h"
#include "SettingsCommand.h"
#include "SettingsKey.h"
#include "TextReport.h"
#include "ThreadPool.h"
#include "VerifyCommand.h"
#include "WatchCommand.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>

namespace bildkurier {

std::unique_ptr<Report> makeReport(bool json) {
    if (json) return std::make_unique<JsonReport>();
    return std::make_unique<TextReport>();
}

namespace {

using Command = CommandLine::Command;

/// The keys of what the call makes otherwise than the user has chosen, or must not touch.
std::set<std::string> ownKeys(const CommandLine& commandLine) {
    using Key = SettingsKey;
    std::set<std::string> own{Key::useFromDate, Key::fromDay};
    if (commandLine.command != Command::watch) own.insert(Key::autoImportEnabled);
    if (commandLine.destination || commandLine.server) {
        own.insert({Key::destination, Key::destinationBookmark, Key::destinationKind, Key::sftpUser,
                    Key::sftpHost, Key::sftpPath});
    }
    if (commandLine.byDate) own.insert(Key::byDate);
    if (commandLine.byType) own.insert(Key::byType);
    return own;
}

void chooseServer(SettingsStore& settings, const std::string& user, const std::string& host,
                  const std::string& path) {
    settings.setDestinationKind(DestinationKind::sftp);
    settings.setSftpUser(user);
    settings.setSftpHost(host);
    settings.setSftpPath(path);
}

/// Makes what the call says the choice of this process.
void choose(const CommandLine& commandLine, SettingsStore& settings) {
    if (commandLine.destination) settings.setDestination(Url::file(*commandLine.destination));
    if (const auto& server = commandLine.server)
        chooseServer(settings, server->user, server->host, server->path);
    if (commandLine.byDate) settings.setByDate(*commandLine.byDate);
    if (commandLine.byType) settings.setByType(*commandLine.byType);
    if (commandLine.since) settings.setUseFromDate(true);
}

AppContainer::Options optionsFor(const CommandLine& commandLine) {
    AppContainer::Options options;
    options.cards = commandLine.cards;
    options.ownKeys = ownKeys(commandLine);
    options.choose = [&commandLine](SettingsStore& settings) { choose(commandLine, settings); };
    options.trusted = commandLine.trust;
    return options;
}

/// Tells the user where what was chosen could not be kept.
ExitStatus kept(const SettingsStore& settings, Report& report) {
    if (!settings.lostChanges()) return ExitStatus::success;
    report.error(settingNotKept);
    return ExitStatus::destinationUnusable;
}

/// Makes the server that answered the user's destination.
ExitStatus keepServer(const AppContainer::Parts& parts, Report& report) {
    const ImportModel& model = *parts.model;
    chooseServer(*parts.settings, model.sftpUser(), model.sftpHost(), model.sftpPath());
    return kept(*parts.settings, report);
}

bool isAboutServer(const CommandLine& commandLine) {
    return commandLine.command == Command::sftpCheck || commandLine.command == Command::sftpForget;
}

bool isAboutKey(const CommandLine& commandLine) {
    return commandLine.command == Command::keyShow || commandLine.command == Command::keyGenerate ||
           commandLine.command == Command::keyImport || commandLine.command == Command::keyRemove;
}

std::shared_ptr<ModelCommand> makeCommand(const CommandLine& commandLine,
                                          const AppContainer::Parts& parts, MainQueue& main,
                                          Background& background, Report& report,
                                          ModelCommand::Done done) {
    if (commandLine.command == Command::watch) {
        return std::make_shared<WatchCommand>(commandLine, parts.settings, parts.model, main,
                                              report, std::move(done));
    }
    if (isAboutServer(commandLine)) {
        return std::make_shared<ServerCommand>(commandLine.command, *commandLine.server,
                                               parts.model, parts.keyring, main, report,
                                               std::move(done));
    }
    return std::make_shared<ImportCommand>(
        commandLine, parts.model, parts.proof, parts.folderAccess, parts.fileStore, parts.keyring,
        parts.runLock, main, background, report, std::move(done));
}

ExitStatus runSettings(const CommandLine& commandLine) {
    const AppContainer::Choices choices = AppContainer::choices();
    const auto report = makeReport(commandLine.json);
    const ExitStatus status =
        runSettings(commandLine, *choices.settings, *choices.folderAccess, *report);
    return status == ExitStatus::success ? kept(*choices.settings, *report) : status;
}

ExitStatus runModel(const CommandLine& commandLine) {
    EventLoop loop;
    const auto report = makeReport(commandLine.json);
    std::shared_ptr<ModelCommand> command;
    std::optional<InterruptSignals> signals(std::in_place, loop, [&] { command->interrupt(); });
    std::optional<ThreadPool> pool(std::in_place);
    AppContainer::Options options = optionsFor(commandLine);
    options.onAttachedCamerasReported = [&] { command->begin(); };
    options.discovers = !isAboutServer(commandLine);
    AppContainer::Parts parts = AppContainer::make(loop, *pool, std::move(options));
    ExitStatus status = ExitStatus::success;
    command = makeCommand(commandLine, parts, loop, *pool, *report, [&](ExitStatus ended) {
        status = ended;
        loop.stop();
    });
    if (isAboutServer(commandLine)) command->begin();
    loop.run();
    if (commandLine.command == Command::sftpCheck && status == ExitStatus::success)
        status = keepServer(parts, *report);

    // From here on the signals end the program again, should a file system hang.
    signals.reset();
    command.reset();
    AppContainer::end(std::move(parts), pool);
    return status;
}

ExitStatus runVerify(const CommandLine& commandLine) {
    EventLoop loop;
    const auto report = makeReport(commandLine.json);
    std::shared_ptr<VerifyCommand> command;
    std::optional<InterruptSignals> signals(std::in_place, loop, [&] { command->interrupt(); });
    std::optional<ThreadPool> pool(std::in_place);
    AppContainer::Options options = optionsFor(commandLine);
    options.onAttachedCamerasReported = [&] { command->begin(); };
    // The model is left alone with the destination: it would try whether it can write there.
    options.discovers = false;
    AppContainer::Parts parts = AppContainer::make(loop, *pool, std::move(options));
    ExitStatus status = ExitStatus::success;
    command = std::make_shared<VerifyCommand>(commandLine, parts.model->dest(), parts.proof,
                                              parts.folderAccess, parts.fileStore, loop, *report,
                                              [&](ExitStatus ended) {
                                                  status = ended;
                                                  loop.stop();
                                              });
    parts.browser->start(command);
    loop.run();

    // From here on the signals end the program again, should a file system hang.
    signals.reset();
    parts.proof->cancel();
    command.reset();
    AppContainer::end(std::move(parts), pool);
    return status;
}

ExitStatus runKeys(const CommandLine& commandLine) {
    EventLoop loop;
    const auto report = makeReport(commandLine.json);
    std::optional<ThreadPool> pool(std::in_place);
    AppContainer::Options options;
    options.folderPicker = std::make_shared<GivenFile>(commandLine.file);
    options.discovers = false;
    auto parts = AppContainer::make(loop, *pool, std::move(options));
    ExitStatus status = ExitStatus::success;
    KeyCommand command(commandLine, parts.keys, *report, [&](ExitStatus ended) {
        status = ended;
        loop.stop();
    });
    command.begin();
    loop.run();
    AppContainer::end(std::move(parts), pool);
    return status;
}

}  // namespace

ExitStatus runProgram(const CommandLine& commandLine) {
    if (commandLine.command == Command::settings) return runSettings(commandLine);
    if (commandLine.command == Command::verify) return runVerify(commandLine);
    return isAboutKey(commandLine) ? runKeys(commandLine) : runModel(commandLine);
}

}  // namespace bildkurier
