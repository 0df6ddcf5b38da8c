// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "CameraFile.h"
#include "FileStore.h"
#include "FolderLayout.h"
#include "Guard.h"
#include "MainQueue.h"
#include "Result.h"
#include "Url.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// Loads camera files into a destination, strictly one after another: each into the staging
/// folder, watched while it grows, checked for its exact size, then moved into its layout
/// folder under a name that is free. A file that fails is counted and the run goes on.
/// Main thread.
class ImportRunner {
public:
    /// Bytes that stay free when the largest file has been loaded: 200 MiB.
    static constexpr std::int64_t headroom = 209'715'200;

    /// Sizes in bytes.
    struct Progress {
        std::int64_t total = 0;  ///< files handed to `start`
        std::int64_t done = 0;   ///< files moved into place
        std::int64_t failed = 0;
        std::int64_t bytesDone = 0;     ///< camera sizes of the finished files, failed ones too
        std::string currentName;        ///< as it is being saved; bytes; empty between runs
        std::int64_t currentBytes = 0;  ///< of the current file, as last measured
        std::int64_t currentTotal = 0;
        bool isTransferring = false;  ///< the current file is being moved into place

        bool operator==(const Progress&) const = default;
    };

    /// Keys (`fileKey`) of one file.
    struct RenamedFile {
        Url destination;       ///< of the run
        std::string key;       ///< by the camera's name
        std::string savedKey;  ///< by the name it bears in the destination
    };

    /// `main` must outlive the runner; `background` must finish before `main` ends.
    ImportRunner(std::shared_ptr<FileStore> fileStore, MainQueue& main, Background& background);

    std::function<void(const Progress&)> onProgress = [](const Progress&) {};
    /// One line without time stamp, valid UTF-8.
    std::function<void(const std::string&)> onLog = [](const std::string&) {};
    /// The end of a run, once: its final progress, and whether it was cancelled.
    std::function<void(const Progress&, bool)> onFinish = [](const Progress&, bool) {};
    /// A file is safely in its place, but under another name than the camera's. Comes before its
    /// log line, or before `onSettled`; must not touch the runner.
    std::function<void(const RenamedFile&)> onRenamed = [](const RenamedFile&) {};
    /// An abandoned run has come to rest, and what it had staged is gone. With the log's line of
    /// the file that was on its way into place, if it arrived.
    std::function<void(const std::optional<std::string>&)> onSettled =
        [](const std::optional<std::string>&) {};

    /// Begins a run; callbacks follow, never before this returns. Fails, and changes nothing,
    /// when the staging folder cannot be made or has no room for the largest file, while another
    /// run lasts, and while an abandoned one is winding up there: no two runs use one staging
    /// folder.
    Result<> start(std::vector<std::shared_ptr<CameraFile>> files, const Url& destination,
                   FolderLayout layout);

    /// Finishes the file in flight and ends the run.
    void cancel() { cancelRequested_ = true; }

    /// Drops the run, if there is one: its callbacks are not called any more, late answers are
    /// ignored. The file that is being moved into place may still arrive there; then the
    /// staging folder goes, and `onSettled` follows, never before this returns.
    void abandon();

    bool isRunning() const { return isRunning_; }
    /// Whether no file of any run can reach the destination any more. A folder may still be made
    /// there.
    bool isSettled() const { return !isRunning_ && windingUp_.empty(); }
    /// Whether an abandoned run may still bring a file to that destination, or to a folder in it
    /// or above it, or still needs the folder in which a run there would stage. Compares paths:
    /// of one that has links only `FileStore::resolved` tells for sure.
    bool isWindingUp(const Url& destination) const;
    /// Where the runs stage that have not come to rest.
    std::vector<Url> stagingDirectories() const;
    /// Whether the run, or the last one, was asked to end early.
    bool isCancelled() const { return cancelRequested_; }
    const Progress& progress() const { return progress_; }
    /// Positions, ascending, of those files handed to `start` that have failed so far.
    const std::vector<std::size_t>& failedFiles() const { return failedFiles_; }

private:
    struct Item;

    /// Where a run works.
    struct Place {
        Url destination;
        Url resolved;  ///< the same
        Url staging;   ///< that of one destination may be that of others, too

        bool operator==(const Place&) const = default;
    };

    void downloadNext();
    void load(CameraFile& file, const Item& item);
    void moveIntoPlace(const Item& item, const Url& staged);
    /// Counts the file, tells what came of it, and goes on.
    void finishFile(const Item& item, const Result<>& outcome);
    void endFile(const Item& item);
    void countFailure();
    void finish();
    static std::string loadedLine(const Item& item);
    static std::string failedLine(const Item& item, const std::string& reason);
    void tellIfRenamed(const Item& item, const Url& destination) const;
    void windUp(const Place& place, const std::optional<Item>& arrived);
    /// Tell the owner, who may start, abandon or destroy this meanwhile: false when this run
    /// must not be touched any more.
    bool log(const std::string& line);
    bool logUntried();
    bool report();
    void watch(const Url& staged);
    void stopWatching();

    std::shared_ptr<FileStore> fileStore_;
    MainQueue& main_;
    Background& background_;

    Progress progress_;
    std::vector<std::size_t> failedFiles_;
    bool isRunning_ = false;
    bool isMoving_ = false;         ///< the run's file in hand is on its way into place
    std::vector<Place> windingUp_;  ///< of abandoned runs that have not come to rest
    std::deque<std::shared_ptr<CameraFile>> queue_;
    Place place_{
        .destination = Url::file("/"), .resolved = Url::file("/"), .staging = Url::file("/")};
    FolderLayout layout_;
    bool cancelRequested_ = false;
    Guard runID_;  ///< renewed with every run, so that an older run's answers are dropped
    Guard alive_;  ///< never renewed
    Handle watcher_;
};

}  // namespace bildkurier
