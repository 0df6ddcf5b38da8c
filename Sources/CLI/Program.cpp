// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Program.h"

#include "AppContainer.h"
#include "BookmarkFolderAccess.h"
#include "EventLoop.h"
#include "Fassung.h"
#include "GivenFile.h"
#include "ImportCommand.h"
#include "IniUserDefaults.h"
#include "InterruptSignals.h"
#include "JsonReport.h"
#include "KeyCommand.h"
#include "ScratchDefaults.h"
#include "ServerCommand.h"
#include "SettingsCommand.h"
#include "SettingsKey.h"
#include "SystemAdapters.h"
#include "TextReport.h"
#include "ThreadPool.h"
#include "UserDefaultsSettings.h"
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

/// The user's choices, with those that the call makes otherwise, or must not touch, in their
/// place.
std::shared_ptr<UserDefaults> defaultsFor(const CommandLine& commandLine,
                                          std::shared_ptr<UserDefaults> stored) {
    using Key = SettingsKey;
    std::set<std::string> own{Key::useFromDate, Key::fromDay};
    if (commandLine.command != Command::watch) own.insert(Key::autoImportEnabled);
    if (commandLine.destination || commandLine.server) {
        own.insert({Key::destination, Key::destinationBookmark, Key::destinationKind, Key::sftpUser,
                    Key::sftpHost, Key::sftpPath});
    }
    if (commandLine.byDate) own.insert(Key::byDate);
    if (commandLine.byType) own.insert(Key::byType);
    auto defaults = std::make_shared<ScratchDefaults>(std::move(stored), std::move(own));
    UserDefaultsSettings settings(defaults);
    if (commandLine.destination) settings.setDestination(Url::file(*commandLine.destination));
    if (commandLine.server) {
        settings.setDestinationKind(DestinationKind::sftp);
        settings.setSftpUser(commandLine.server->user);
        settings.setSftpHost(commandLine.server->host);
        settings.setSftpPath(commandLine.server->path);
    }
    if (commandLine.byDate) settings.setByDate(*commandLine.byDate);
    if (commandLine.byType) settings.setByType(*commandLine.byType);
    if (commandLine.since) settings.setUseFromDate(true);
    return defaults;
}

/// Tells the user that it could not be kept.
ExitStatus failToSave(Report& report) {
    report.error(settingNotKept);
    return ExitStatus::destinationUnusable;
}

/// Makes the server that answered the user's destination.
ExitStatus keepServer(const ImportModel& model, Report& report) {
    const auto defaults = std::make_shared<IniUserDefaults>();
    UserDefaultsSettings settings(defaults);
    settings.setDestinationKind(DestinationKind::sftp);
    settings.setSftpUser(model.sftpUser());
    settings.setSftpHost(model.sftpHost());
    settings.setSftpPath(model.sftpPath());
    return defaults->lostChanges() ? failToSave(report) : ExitStatus::success;
}

bool isAboutServer(const CommandLine& commandLine) {
    return commandLine.command == Command::sftpCheck || commandLine.command == Command::sftpForget;
}

bool isAboutKey(const CommandLine& commandLine) {
    return commandLine.command == Command::keyShow || commandLine.command == Command::keyGenerate ||
           commandLine.command == Command::keyImport || commandLine.command == Command::keyRemove;
}

std::shared_ptr<ModelCommand> makeCommand(const CommandLine& commandLine,
                                          const AppContainer::Parts& parts,
                                          std::shared_ptr<const IniUserDefaults> stored,
                                          MainQueue& main, Background& background, Report& report,
                                          ModelCommand::Done done) {
    if (commandLine.command == Command::watch) {
        return std::make_shared<WatchCommand>(
            commandLine.trust, [stored = std::move(stored)] { return stored->lostChanges(); },
            parts.model, main, report, std::move(done));
    }
    if (isAboutServer(commandLine)) {
        return std::make_shared<ServerCommand>(commandLine.command, *commandLine.server,
                                               parts.model, parts.keyring, main, report,
                                               std::move(done));
    }
    return std::make_shared<ImportCommand>(commandLine, parts.model, parts.proof, parts.fileStore,
                                           parts.keyring, parts.runLock, main, background, report,
                                           std::move(done));
}

ExitStatus runSettings(const CommandLine& commandLine) {
    const auto defaults = std::make_shared<IniUserDefaults>();
    UserDefaultsSettings settings(defaults);
    BookmarkFolderAccess access(defaults, SettingsKey::destinationBookmark, Fassung::sandbox(),
                                systemBookmarks());
    const auto report = makeReport(commandLine.json);
    const ExitStatus status = runSettings(commandLine, settings, access, *report);
    const bool isLost = status == ExitStatus::success && defaults->lostChanges();
    return isLost ? failToSave(*report) : status;
}

ExitStatus runModel(const CommandLine& commandLine) {
    EventLoop loop;
    const auto report = makeReport(commandLine.json);
    std::shared_ptr<ModelCommand> command;
    std::optional<InterruptSignals> signals(std::in_place, loop, [&] { command->interrupt(); });
    std::optional<ThreadPool> pool(std::in_place);
    const auto stored = std::make_shared<IniUserDefaults>();
    AppContainer::Parts parts =
        AppContainer::make(loop, *pool,
                           {.cards = commandLine.cards,
                            .defaults = defaultsFor(commandLine, stored),
                            .folderPicker = nullptr,
                            .trusted = commandLine.trust,
                            .onAttachedCamerasReported = [&] { command->begin(); },
                            .discovers = !isAboutServer(commandLine)});
    ExitStatus status = ExitStatus::success;
    command = makeCommand(commandLine, parts, stored, loop, *pool, *report, [&](ExitStatus ended) {
        status = ended;
        loop.stop();
    });
    if (isAboutServer(commandLine)) command->begin();
    loop.run();
    if (commandLine.command == Command::sftpCheck && status == ExitStatus::success)
        status = keepServer(*parts.model, *report);

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
    // The model is left alone with the destination: it would try whether it can write there.
    AppContainer::Parts parts = AppContainer::make(
        loop, *pool,
        {.cards = commandLine.cards,
         .defaults = defaultsFor(commandLine, std::make_shared<IniUserDefaults>()),
         .folderPicker = nullptr,
         .trusted = {},
         .onAttachedCamerasReported = [&] { command->begin(); },
         .discovers = false});
    ExitStatus status = ExitStatus::success;
    command = std::make_shared<VerifyCommand>(commandLine, parts.model->dest(), parts.proof, loop,
                                              *report, [&](ExitStatus ended) {
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
    auto parts = AppContainer::make(loop, *pool,
                                    {.cards = {},
                                     .defaults = nullptr,
                                     .folderPicker = std::make_shared<GivenFile>(commandLine.file),
                                     .trusted = {},
                                     .discovers = false});
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
