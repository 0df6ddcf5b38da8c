// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardProof.h"

#include "ByteSum.h"
#include "FileName.h"
#include "Formatting.h"
#include "ImportModel.h"
#include "RunThen.h"
#include "ServerVisit.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>
#include <set>
#include <utility>

namespace bildkurier {

namespace {

using Kind = Proof::Kind;
using File = ContentReader::File;
using Proofs = std::vector<std::vector<Proof>>;  ///< of groups

constexpr std::size_t mostUnderWay = 4;
constexpr std::int64_t batchBytes = 32 << 20;
constexpr std::size_t batchFiles = 64;

}  // namespace

/// What has to be compared.
struct CardProof::Plan {
    std::optional<std::string> newServer;
    ContentReader::Listing destination;
    std::vector<std::string> cautions;
    std::vector<ProofGroup> groups;
};

/// Some groups that are proved in one go.
struct CardProof::Batch {
    std::size_t number = 0;
    std::vector<ProofGroup> groups;
    std::size_t files = 0;   ///< of the card
    std::int64_t bytes = 0;  ///< of these
    std::deque<std::size_t> toLoad;
    std::map<std::size_t, Result<PlacedFile>> card;  ///< by position; of files with candidates
    std::vector<std::size_t> likely;  ///< files of the destination that will be needed anyhow
    std::int64_t room = 0;            ///< that copies may take at most
    std::vector<Url> copies;          ///< of what is to be loaded and of what is likely
    std::int64_t bytesToCopy = 0;     ///< the sizes of these
    std::int64_t bytesCopied = 0;     ///< as last measured; stays when copies are removed
    std::atomic<std::int64_t> bytesCompared = 0;
};

namespace {

/// The card, where it is a folder of this computer.
std::optional<Url> folderOf(const CameraFiles& files) {
    const auto place = files.empty() ? std::nullopt : files.front()->place();
    return place ? std::optional(place->folder) : std::nullopt;
}

std::string cardCopyName(std::size_t position) { return fmt::format("karte-{}", position); }

/// An older copy there could be taken for a new one.
Result<> makeEmpty(FileStore& store, const Url& folder) {
    store.removeItem(folder);
    if (store.fileExists(folder)) {
        return failure(fmt::format("Der Ordner für Kopien „{}“ lässt sich nicht leeren.",
                                   displayText(folder.path)));
    }
    if (const auto made = store.createDirectory(folder); !made)
        return failure("Der Ordner für Kopien lässt sich nicht anlegen: " + made.error().message);
    return {};
}

/// What the names of a batch's copies from the destination begin with.
std::string prefixOf(std::size_t batch, std::size_t fetch) {
    return fmt::format("ziel-{}-{}-", batch, fetch);
}

/// Reads the destination's files when they are needed, and as many of them at once as will be
/// needed anyhow.
class DestinationFiles {
public:
    DestinationFiles(ContentReader& reader, const std::vector<File>& files, Url staging,
                     std::size_t batch)
        : reader_(reader), files_(files), staging_(std::move(staging)), batch_(batch) {}

    void fetch(const std::vector<std::size_t>& positions) {
        std::vector<File> wanted;
        wanted.reserve(positions.size());
        for (const std::size_t n : positions) wanted.push_back(files_[n]);
        const auto found = reader_.fetch(wanted, staging_, prefixOf(batch_, ++fetches_));
        for (std::size_t n = 0; n < positions.size(); ++n)
            places_.insert_or_assign(positions[n], found[n]);
    }

    const Result<PlacedFile>& place(std::size_t position) {
        if (!places_.contains(position)) fetch({position});
        return places_.at(position);
    }

    std::int64_t size(std::size_t position) const { return files_[position].size; }

    /// Of the places, those of copies.
    std::vector<Url> copies() const {
        std::vector<Url> urls;
        for (const auto& [position, place] : places_)
            if (place && place->folder == staging_) urls.push_back(staging_.appending(place->path));
        return urls;
    }

private:
    ContentReader& reader_;
    const std::vector<File>& files_;
    Url staging_;
    std::size_t batch_;
    std::size_t fetches_ = 0;
    std::map<std::size_t, Result<PlacedFile>> places_;
};

}  // namespace

CardProof::CardProof(Collaborators collaborators, MainQueue& main, Background& background)
    : reader_(std::move(collaborators.reader)),
      fileStore_(std::move(collaborators.fileStore)),
      keyring_(std::move(collaborators.keyring)),
      runLock_(std::move(collaborators.runLock)),
      staging_(std::move(collaborators.staging)),
      main_(main),
      background_(background) {}

CardProof::~CardProof() { cancel(); }

std::optional<Url> CardProof::stagingToClear() const {
    return mayHaveStaged_ ? std::optional(staging_) : std::nullopt;
}

void CardProof::start(Task task) {
    isRunning_ = true;
    task_ = std::move(task);
    outcome_ = {.files = std::ssize(task_.files),
                .content = task_.content,
                .isWholeCard = task_.isWholeCard,
                .others = task_.others};
    for (const auto& file : task_.files) outcome_.bytes = byteSum(outcome_.bytes, file->size());
    progress_ = {};
    progress_.total = outcome_.files;
    waiting_.clear();
    underWay_.clear();
    isLoading_ = false;
    speedMeter_ = {};
    isCancelled_ = std::make_shared<std::atomic<bool>>(false);
    if (const auto locked = runLock_->acquire(); !locked) {
        return main_.post(run_([this, error = locked.error()] { finish(std::unexpected(error)); }));
    }
    auto card = candidates(task_.files);
    for (std::size_t n = 0; n < card.size(); ++n)
        if (task_.files[n]->obstacle()) card[n].name.reset();
    runThen(
        background_, main_,
        [reader = reader_, keyring = keyring_, overlaps = task_.overlaps,
         destination = task_.destination, card = std::move(card), folder = folderOf(task_.files),
         isWholeCard = task_.isWholeCard]() -> Result<Plan> {
            if (overlaps(destination)) return failure(ImportModel::overlapStatus);
            Plan plan;
            const auto list = [&]() -> Result<> {
                auto listing = reader->files(destination);
                if (!listing) return std::unexpected(listing.error());
                plan.destination = *std::move(listing);
                return {};
            };
            if (destination.isFile()) {
                if (const auto listed = list(); !listed)
                    return failure("Der Zielordner ist nicht lesbar: " + listed.error().message);
            } else {
                const auto visit = ServerVisit::pay(destination, keyring.get(), list);
                if (visit.error) return std::unexpected(*visit.error);
                if (visit.isFirst) plan.newServer = visit.fingerprint;
            }
            if (isWholeCard) plan.cautions = reader->cautions(destination, folder);
            plan.groups = proofGroups(card, plan.destination.files);
            return plan;
        },
        run_([this](Result<Plan> plan) { planned(std::move(plan)); }));
}

void CardProof::cancel() {
    if (!isRunning_) return;
    run_.renew();
    *isCancelled_ = true;
    reports_.reset();
    isRunning_ = false;
    // The lock is kept: work under way may still read copies.
}

void CardProof::planned(Result<Plan> plan) {
    if (!plan) return finish(std::unexpected(plan.error()));
    if (const auto& server = plan->newServer) onNewServer(*server);
    for (const auto& caution : plan->cautions) onCaution(caution);
    for (const auto& folder : plan->destination.unreadable) onUnreadable(folder);
    for (std::size_t n = 0; n < task_.files.size(); ++n) {
        if (const auto obstacle = task_.files[n]->obstacle()) {
            tell(n, {.kind = Kind::notReadable, .why = obstacle->message});
        } else if (!task_.files[n]->name()) {
            tell(n, {.kind = Kind::notReadable, .why = "Datei ohne Namen"});
        }
    }
    destination_ = std::make_shared<const std::vector<File>>(std::move(plan->destination.files));
    for (ProofGroup& group : plan->groups) {
        if (!task_.content) {
            tell(group, provedByKey(group));
        } else {
            waiting_.push_back(std::move(group));
        }
    }
    if (!task_.content) return lookAgain();
    onComparing(outcome_);
    reports_ = main_.every(reportInterval, [this] { report(); });
    mayHaveStaged_ = true;
    // What an earlier run may have left because the computer went off.
    runThen(
        background_, main_,
        [store = fileStore_, staging = staging_] { return makeEmpty(*store, staging); },
        run_([this](const Result<>& made) {
            if (!made) return finish(std::unexpected(made.error()));
            takeNext();
        }));
}

void CardProof::takeNext() {
    while (!waiting_.empty() && underWay_.size() < mostUnderWay && !isLoading_) {
        const auto batch = std::make_shared<Batch>();
        const std::int64_t left = roomLeft();
        const auto isFull = [&] {
            return batch->bytes >= batchBytes || batch->files >= batchFiles;
        };
        while (!waiting_.empty() && !isFull()) {
            const std::int64_t room = roomFor(waiting_.front());
            if (room > 0 && byteSum(batch->room, room) > left) break;
            batch->room = byteSum(batch->room, room);
            if (batch->groups.empty()) batch->number = ++batches_;
            add(*batch, std::move(waiting_.front()));
            waiting_.pop_front();
        }
        if (!batch->groups.empty()) {
            underWay_.push_back(batch);
            load(batch);
        } else if (underWay_.empty()) {
            giveUp(waiting_.front(), byteSum(left, ImportRunner::headroom));
            waiting_.pop_front();
        } else {
            return;  // Copies will make room.
        }
    }
    if (waiting_.empty() && underWay_.empty()) lookAgain();
}

std::int64_t CardProof::roomFor(const ProofGroup& group) const {
    std::int64_t bytes = 0;
    std::set<std::size_t> there;
    for (const auto& [position, candidates] : group.members) {
        const auto& file = *task_.files[position];
        if (!candidates.empty() && !file.place()) bytes = byteSum(bytes, file.size());
        for (const auto& candidate : candidates) there.insert(candidate.position);
    }
    if (task_.destination.isFile()) return bytes;
    for (const std::size_t n : there) bytes = byteSum(bytes, (*destination_)[n].size);
    return bytes;
}

std::int64_t CardProof::roomLeft() const {
    auto free = fileStore_->availableCapacity(staging_);
    if (!free) return std::numeric_limits<std::int64_t>::max();
    for (const auto& batch : underWay_) free = byteSum(*free, -batch->room);
    return *free - ImportRunner::headroom;
}

void CardProof::giveUp(const ProofGroup& group, std::int64_t free) {
    const auto needed = byteSum(roomFor(group), ImportRunner::headroom);
    const Error error{
        fmt::format("auf diesem Computer ist zu wenig Platz für eine Kopie ({} nötig, {} frei)",
                    formatBytes(needed), formatBytes(free))};
    tell(group, proved(group, [&](auto, auto) { return std::unexpected(error); }));
}

void CardProof::add(Batch& batch, ProofGroup group) const {
    const auto copy = [&](const std::string& name, std::int64_t size) {
        batch.copies.push_back(staging_.appending(name));
        batch.bytesToCopy = byteSum(batch.bytesToCopy, size);
    };
    for (const auto& [position, candidates] : group.members) {
        const auto& file = *task_.files[position];
        batch.bytes = byteSum(batch.bytes, file.size());
        ++batch.files;
        if (candidates.empty()) continue;
        if (auto place = file.place()) {
            batch.card.emplace(position, *std::move(place));
        } else {
            batch.toLoad.push_back(position);
            copy(cardCopyName(position), file.size());
        }
        const std::size_t likely = candidates.front().position;
        if (std::ranges::find(batch.likely, likely) != batch.likely.end()) continue;
        if (!task_.destination.isFile()) {
            copy(fmt::format("{}{}", prefixOf(batch.number, 1), batch.likely.size()),
                 (*destination_)[likely].size);
        }
        batch.likely.push_back(likely);
    }
    batch.groups.push_back(std::move(group));
}

void CardProof::load(const std::shared_ptr<Batch>& batch) {
    isLoading_ = !batch->toLoad.empty();
    if (!isLoading_) return compare(batch);
    const std::size_t position = batch->toLoad.front();
    batch->toLoad.pop_front();
    const std::string name = cardCopyName(position);
    using Downloaded = Result<std::optional<std::string>>;
    auto loaded = run_([this, batch, position, name](const Downloaded& result) {
        const PlacedFile copy{.folder = staging_, .path = name};
        if (!result) {
            batch->card.emplace(position, std::unexpected(result.error()));
        } else if (result->value_or(name) != name) {
            batch->card.emplace(position, failure("unter anderem Namen geladen"));
        } else {
            batch->card.emplace(position, copy);
        }
        load(batch);
        if (!isLoading_) takeNext();
    });
    task_.files[position]->download(staging_, name, [&main = main_, loaded](Downloaded result) {
        main.post([loaded, result = std::move(result)]() mutable { loaded(std::move(result)); });
    });
}

void CardProof::compare(const std::shared_ptr<Batch>& batch) {
    runThen(
        background_, main_,
        [batch, isCancelled = isCancelled_, reader = reader_, store = fileStore_,
         files = destination_, staging = staging_] {
            DestinationFiles destination(*reader, *files, staging, batch->number);
            if (!batch->likely.empty() && !*isCancelled) destination.fetch(batch->likely);
            const auto step = [&](std::int64_t bytes) {
                batch->bytesCompared += bytes;
                return !*isCancelled;
            };
            const ProofTest isSame = [&](std::size_t card, std::size_t candidate) -> Result<bool> {
                if (*isCancelled) return failure("Die Prüfung wurde abgebrochen");
                const auto& ours = batch->card.at(card);
                if (!ours) return std::unexpected(ours.error());
                const auto& theirs = destination.place(candidate);
                if (!theirs) return std::unexpected(theirs.error());
                return reader->haveSameContent(*ours, *theirs, destination.size(candidate), step);
            };
            Proofs proofs;
            proofs.reserve(batch->groups.size());
            for (const auto& group : batch->groups) proofs.push_back(proved(group, isSame));
            for (const Url& copy : destination.copies()) store->removeItem(copy);
            for (const auto& [position, place] : batch->card) {
                if (place && place->folder == staging)
                    store->removeItem(staging.appending(place->path));
            }
            return proofs;
        },
        run_([this, batch](const Proofs& proofs) {
            std::erase(underWay_, batch);
            for (std::size_t n = 0; n < proofs.size(); ++n) tell(batch->groups[n], proofs[n]);
            takeNext();
        }));
}

void CardProof::tell(const ProofGroup& group, const std::vector<Proof>& proofs) {
    for (std::size_t n = 0; n < proofs.size(); ++n) tell(group.members[n].position, proofs[n]);
}

void CardProof::tell(std::size_t position, const Proof& proof) {
    const auto& file = *task_.files[position];
    progress_.bytesDone = byteSum(progress_.bytesDone, file.size());
    if (proof.kind == Kind::present) {
        ++outcome_.present;
        ++progress_.done;
        return;
    }
    ++progress_.failed;
    ++(proof.kind == Kind::twin          ? outcome_.twins
       : proof.kind == Kind::notReadable ? outcome_.unproved
                                         : outcome_.missing);
    onFinding({.name = file.name().value_or(""), .size = file.size(), .proof = proof});
}

std::int64_t CardProof::bytesDone(Batch& batch) const {
    std::int64_t copied = 0;
    for (const Url& copy : batch.copies)
        copied = byteSum(copied, fileStore_->fileSize(copy).value_or(0));
    batch.bytesCopied = std::max(batch.bytesCopied, copied);
    const auto done = static_cast<double>(byteSum(batch.bytesCopied, batch.bytesCompared));
    const auto all = static_cast<double>(byteSum(batch.bytesToCopy, batch.bytes));
    if (done >= all) return batch.bytes;
    return static_cast<std::int64_t>(static_cast<double>(batch.bytes) * (done / all));
}

void CardProof::report() {
    auto shown = progress_;
    for (const auto& batch : underWay_)
        shown.currentBytes = byteSum(shown.currentBytes, bytesDone(*batch));
    speedMeter_.sample(byteSum(shown.bytesDone, shown.currentBytes),
                       main_.now().time_since_epoch().count());
    onProgress(shown, speedMeter_.reading);
}

void CardProof::lookAgain() {
    runThen(background_, main_, task_.hasSameFiles, run_([this](bool isSame) {
                outcome_.hasCardChanged = !isSame;
                finish(outcome_);
            }));
}

void CardProof::finish(const Result<Outcome>& outcome) {
    run_.renew();
    reports_.reset();
    isRunning_ = false;
    if (mayHaveStaged_) fileStore_->removeItem(staging_);
    mayHaveStaged_ = false;
    runLock_->release();
    task_ = {};
    onFinish(Result<Outcome>(outcome));
}

}  // namespace bildkurier
