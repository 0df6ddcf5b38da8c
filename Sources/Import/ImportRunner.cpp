// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportRunner.h"

#include "ByteSum.h"
#include "FileKey.h"
#include "FileName.h"
#include "Formatting.h"
#include "ImportError.h"
#include "RunThen.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace bildkurier {

namespace {

constexpr Duration watchInterval{0.5};
constexpr auto nameless = "unbenannt";
constexpr auto invalidName = "Ungültiger Dateiname";
constexpr auto noNameFree = "Der Name ist vergeben, und mit einer Nummer dahinter wäre er zu lang";

std::int64_t largestSize(const std::vector<std::shared_ptr<CameraFile>>& files) {
    return std::ranges::max(files, {}, [](const auto& file) { return file->size(); })->size();
}

/// As far as their names tell.
bool liesIn(const Url& inner, const Url& outer) {
    const auto withSlash = [](const Url& url) { return url.appending("").path; };
    return inner.scheme == outer.scheme && inner.host == outer.host && inner.port == outer.port &&
           withSlash(inner).starts_with(withSlash(outer));
}

bool overlap(const Url& a, const Url& b) { return liesIn(a, b) || liesIn(b, a); }

}  // namespace

/// The file in hand and where it goes.
struct ImportRunner::Item {
    std::int64_t size = 0;
    std::string wantedName;
    std::string saveName;  ///< free in `folder`; until it is known, the wanted name
    Url folder;
};

ImportRunner::ImportRunner(std::shared_ptr<FileStore> fileStore, MainQueue& main,
                           Background& background)
    : fileStore_(std::move(fileStore)), main_(main), background_(background) {}

Result<> ImportRunner::start(std::vector<std::shared_ptr<CameraFile>> files, const Url& destination,
                             FolderLayout layout) {
    const Url resolved = fileStore_->resolved(destination);
    if (isRunning_ || isWindingUp(destination) || isWindingUp(resolved))
        return failure("Es läuft schon ein Import.");
    const Url staging = fileStore_->stagingDirectory(destination);
    fileStore_->removeItem(staging);
    if (auto created = fileStore_->createDirectory(staging); !created) {
        fileStore_->removeItem(staging);
        return created;
    }
    const auto free = fileStore_->availableCapacity(staging);
    if (free && !files.empty()) {
        const std::int64_t largest = largestSize(files);
        if (*free - headroom < largest) {
            fileStore_->removeItem(staging);
            return std::unexpected(ImportError::notEnoughSpace(largest, *free));
        }
    }

    place_ = {.destination = destination, .resolved = resolved, .staging = staging};
    layout_ = layout;
    progress_ = {.total = std::ssize(files)};
    failedFiles_.clear();
    queue_.assign(std::make_move_iterator(files.begin()), std::make_move_iterator(files.end()));
    cancelRequested_ = false;
    watcher_.reset();
    runID_.renew();
    isRunning_ = true;
    main_.post(runID_([this] { downloadNext(); }));
    return {};
}

void ImportRunner::abandon() {
    if (!isRunning_) return;
    runID_.renew();
    queue_.clear();
    isRunning_ = false;
    windingUp_.push_back(place_);
    stopWatching();
    progress_.currentName.clear();
    progress_.isTransferring = false;
    if (!std::exchange(isMoving_, false)) windUp(place_, std::nullopt);
}

bool ImportRunner::isWindingUp(const Url& destination) const {
    return std::ranges::any_of(windingUp_, [&](const Place& other) {
        return overlap(other.destination, destination) || overlap(other.resolved, destination) ||
               overlap(other.staging, fileStore_->stagingDirectory(destination));
    });
}

std::vector<Url> ImportRunner::stagingDirectories() const {
    std::vector<Url> found;
    if (isRunning_) found.push_back(place_.staging);
    for (const Place& place : windingUp_) found.push_back(place.staging);
    return found;
}

void ImportRunner::downloadNext() {
    if (queue_.empty() || cancelRequested_) return finish();

    const auto file = std::move(queue_.front());
    queue_.pop_front();
    const auto name = file->name();
    Item item{.size = file->size(), .wantedName = name.value_or(nameless)};
    item.saveName = item.wantedName;
    if (auto obstacle = file->obstacle())
        return finishFile(item, std::unexpected(*std::move(obstacle)));
    if (!isPlainFileName(item.wantedName) ||
        (layout_.byType && !isPlainFileName(typeFolder(name)))) {
        return finishFile(item, failure(invalidName));
    }
    item.folder = layout_.folder(place_.destination, file->shotDate().value_or(main_.date()), name);

    struct Prepared {
        Result<> folder;
        Result<std::string> saveName;
    };
    runThen(
        background_, main_,
        [store = fileStore_, folder = item.folder, name = item.wantedName] {
            Prepared prepared{.folder = store->createDirectory(folder)};
            if (!prepared.folder) return prepared;
            if (const auto admitted = store->admitsFiles(folder); !admitted) {
                prepared.saveName = std::unexpected(admitted.error());
            } else {
                prepared.saveName = store->freeName(name, folder);
            }
            return prepared;
        },
        runID_([this, file, item](Prepared prepared) mutable {
            if (!prepared.folder) {
                if (!log(fmt::format("Kann Ordner nicht anlegen: {}: {}",
                                     displayText(item.folder.path),
                                     prepared.folder.error().message)) ||
                    !logUntried()) {
                    return;
                }
                queue_.clear();
                countFailure();
                return downloadNext();
            }
            if (!prepared.saveName)
                return finishFile(item, std::unexpected(std::move(prepared.saveName).error()));
            if (!isPlainFileName(*prepared.saveName)) return finishFile(item, failure(noNameFree));
            item.saveName = *std::move(prepared.saveName);
            load(*file, item);
        }));
}

void ImportRunner::load(CameraFile& file, const Item& item) {
    if (item.saveName != item.wantedName &&
        !log(fmt::format("ℹ︎ {} existiert schon mit anderem Inhalt → gespeichert als {}",
                         displayText(item.wantedName), displayText(item.saveName)))) {
        return;
    }
    progress_.currentName = item.saveName;
    progress_.currentBytes = 0;
    progress_.currentTotal = item.size;
    if (!report()) return;
    watch(place_.staging.appending(item.saveName));

    using Downloaded = Result<std::optional<std::string>>;
    auto downloaded = runID_([this, item](Downloaded result) {
        stopWatching();
        if (!result) return finishFile(item, std::unexpected(std::move(result).error()));
        const std::string saved = std::move(*result).value_or(item.saveName);
        if (!isPlainFileName(saved)) return finishFile(item, failure(invalidName));
        moveIntoPlace(item, place_.staging.appending(saved));
    });
    file.download(place_.staging, item.saveName, [&main = main_, downloaded](Downloaded result) {
        main.post(
            [downloaded, result = std::move(result)]() mutable { downloaded(std::move(result)); });
    });
}

void ImportRunner::moveIntoPlace(const Item& item, const Url& staged) {
    const std::int64_t actual = fileStore_->fileSize(staged).value_or(-1);
    if (actual != item.size) {
        countFailure();
        if (!log(failedLine(
                item, fmt::format("Größe stimmt nicht ({} statt {} Bytes)", actual, item.size)))) {
            return;
        }
        fileStore_->removeItem(staged);
        return endFile(item);
    }
    progress_.isTransferring = true;
    if (!report()) return;
    isMoving_ = true;
    runThen(
        background_, main_,
        [store = fileStore_, run = runID_.watch(), staged,
         target = item.folder.appending(item.saveName)]() -> Result<> {
            if (run.expired()) return failure("Der Import wurde abgebrochen");
            return store->moveItem(staged, target);
        },
        alive_([this, run = runID_.watch(), item, place = place_](const Result<>& moved) {
            if (run.expired()) return windUp(place, moved ? std::optional(item) : std::nullopt);
            isMoving_ = false;
            progress_.isTransferring = false;
            finishFile(item, moved);
        }));
}

std::string ImportRunner::loadedLine(const Item& item) {
    return fmt::format("✓ {}/{}  ({})", displayText(item.folder.lastComponent()),
                       displayText(item.saveName), formatBytes(item.size));
}

std::string ImportRunner::failedLine(const Item& item, const std::string& reason) {
    return fmt::format("✗ {}: {}", displayText(item.saveName), reason);
}

void ImportRunner::finishFile(const Item& item, const Result<>& outcome) {
    if (outcome) {
        tellIfRenamed(item, place_.destination);
        ++progress_.done;
    } else {
        countFailure();
    }
    if (log(outcome ? loadedLine(item) : failedLine(item, outcome.error().message))) endFile(item);
}

void ImportRunner::endFile(const Item& item) {
    progress_.bytesDone = byteSum(progress_.bytesDone, item.size);
    // Posted, for a row of files that fail at once must not pile up on the stack.
    main_.post(runID_([this] { downloadNext(); }));
}

void ImportRunner::countFailure() {
    failedFiles_.push_back(static_cast<std::size_t>(progress_.done + progress_.failed));
    ++progress_.failed;
}

void ImportRunner::finish() {
    runID_.renew();
    isRunning_ = false;
    stopWatching();
    progress_.currentName.clear();
    fileStore_->removeItem(place_.staging);
    if (report()) onFinish(Progress(progress_), cancelRequested_);
}

void ImportRunner::tellIfRenamed(const Item& item, const Url& destination) const {
    if (item.saveName == item.wantedName) return;
    onRenamed({.destination = destination,
               .key = fileKey(item.wantedName, item.size),
               .savedKey = fileKey(item.saveName, item.size)});
}

void ImportRunner::windUp(const Place& place, const std::optional<Item>& arrived) {
    const auto settled = alive_([this, place, arrived] {
        windingUp_.erase(std::ranges::find(windingUp_, place));
        if (arrived) tellIfRenamed(*arrived, place.destination);
        onSettled(arrived ? std::optional(loadedLine(*arrived)) : std::nullopt);
    });
    background_.run([store = fileStore_, staging = place.staging, &main = main_, settled] {
        store->removeItem(staging);
        main.post(settled);
    });
}

bool ImportRunner::log(const std::string& line) {
    const auto run = runID_.watch();
    onLog(line);
    return !run.expired();
}

bool ImportRunner::logUntried() {
    if (queue_.empty()) return true;
    return log(queue_.size() == 1
                   ? "1 weitere Datei wurde nicht mehr versucht und fehlt noch."
                   : fmt::format("{} weitere Dateien wurden nicht mehr versucht und fehlen noch.",
                                 queue_.size()));
}

bool ImportRunner::report() {
    const auto run = runID_.watch();
    onProgress(progress_);
    return !run.expired();
}

void ImportRunner::watch(const Url& staged) {
    watcher_ = main_.every(watchInterval, [this, staged] {
        const std::int64_t bytes = fileStore_->fileSize(staged).value_or(0);
        if (bytes == progress_.currentBytes) return;
        progress_.currentBytes = bytes;
        onProgress(progress_);
    });
}

void ImportRunner::stopWatching() {
    watcher_.reset();
    progress_.currentBytes = 0;
    progress_.currentTotal = 0;
}

}  // namespace bildkurier
