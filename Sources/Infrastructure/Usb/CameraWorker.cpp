// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CameraWorker.h"

#include "CameraLister.h"
#include "CameraLoader.h"
#include "ListingUpdate.h"
#include "UsbIdentity.h"

#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace bildkurier {

namespace {

/// So often a camera may fail to say whether there are new shots; then it is asked no more.
constexpr int mostFailedQuestions = 3;

CardCatalogue catalogueOf(const CardListing& listing) {
    CardCatalogue catalogue = arrangeCatalogue(listing);
    dateSidecars(catalogue);
    return catalogue;
}

std::timespec modificationTime(const CardEntry& entry) {
    if (!entry.modified) return {.tv_sec = 0, .tv_nsec = UTIME_OMIT};
    return {
        .tv_sec =
            std::chrono::floor<std::chrono::seconds>(*entry.modified).time_since_epoch().count(),
        .tv_nsec = 0};
}

}  // namespace

CameraWorker::CameraWorker(UsbPlace place, UsbBus bus, UsbTiming timing,
                           CameraConnection::Release release, std::shared_ptr<Mailbox> mailbox,
                           Events events)
    : place_(std::move(place)),
      bus_(std::move(bus)),
      timing_(timing),
      release_(std::move(release)),
      mailbox_(std::move(mailbox)),
      events_(std::move(events)) {}

void CameraWorker::start() {
    std::thread([self = shared_from_this()] { self->work(); }).detach();
}

void CameraWorker::open(std::shared_ptr<UsbSession> session, SessionEvents events) {
    run([this, session = std::move(session), events = std::move(events)]() mutable {
        openSession(session, std::move(events));
    });
}

void CameraWorker::load(std::shared_ptr<UsbSession> session, std::shared_ptr<UsbLoad> load) {
    session->add(load);
    run([this, session = std::move(session), load = std::move(load)] { loadFile(session, load); });
}

void CameraWorker::close(std::shared_ptr<UsbSession> session) {
    run([this, session = std::move(session)] {
        if (!opened_ || opened_->session != session) return;
        opened_.reset();
        connection_->close();
    });
}

void CameraWorker::end() {
    const std::lock_guard lock(mutex_);
    ending_ = true;
    changed_.notify_all();
}

void CameraWorker::waitUntilEnded(std::chrono::steady_clock::time_point deadline) {
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, deadline, [this] { return ended_; });
    changed_.wait(lock, [this] { return ended_ || !delivering_; });
}

void CameraWorker::run(Task task) {
    const std::lock_guard lock(mutex_);
    // Nobody would do it, or let go of what it holds.
    if (ended_) return;
    tasks_.push_back(std::move(task));
    changed_.notify_all();
}

void CameraWorker::work() {
    connection_ = std::make_unique<CameraConnection>(place_, bus_, timing_, release_);
    identify();
    while (const Task task = next()) task();
    opened_.reset();
    connection_.reset();
    std::deque<Task> dropped;
    const std::lock_guard lock(mutex_);
    ended_ = true;
    dropped.swap(tasks_);
    changed_.notify_all();
}

/// Empty when there is nothing left to do.
Task CameraWorker::next() {
    const auto wanted = [this] { return ending_ || !tasks_.empty(); };
    std::unique_lock lock(mutex_);
    while (!wanted()) {
        if (!tellsOfNewShots()) {
            changed_.wait(lock, wanted);
        } else if (!changed_.wait_for(lock, timing_.events, wanted)) {
            lock.unlock();
            askForNewShots();
            lock.lock();
        }
    }
    if (tasks_.empty()) return {};
    Task task = std::move(tasks_.front());
    tasks_.pop_front();
    return task;
}

void CameraWorker::identify() {
    connection_->camera().identify();
    facts_ = factsAtUsb(place_);
    facts_.name = connection_->name();
    if (!facts_.isComplete && connection_->openIfFree()) readSerial();
    connection_->close();
    tellFacts();
}

CameraFault CameraWorker::readSerial() {
    const auto [code, serial] = connection_->cameraInStep().serial();
    const CameraFault fault = connection_->fault(code);
    facts_.serial = actualSerial(serial);
    facts_.isComplete = fault != CameraFault::Transfer && fault != CameraFault::Busy &&
                        fault != CameraFault::Gone && fault != CameraFault::Cancelled;
    return fault;
}

/// A camera that says nothing all the same is known by what everybody sees, but not for certain.
void CameraWorker::insistOnSerial(const UsbSession& session) {
    constexpr int mostTries = 3;
    std::size_t busy = 0;
    for (int tries = 0; tries < mostTries && !facts_.isComplete && !session.hasEnded(); ++tries) {
        CameraFault fault = readSerial();
        while (fault == CameraFault::Busy && connection_->waitWhileBusy(busy++))
            fault = readSerial();
        if (fault == CameraFault::Gone) return;
    }
}

void CameraWorker::tellFacts() {
    mailbox_->post([identified = events_.identified, facts = facts_] { identified(facts); });
}

void CameraWorker::openSession(const std::shared_ptr<UsbSession>& session, SessionEvents events) {
    if (session->hasEnded()) return;
    const auto opened = connection_->open(session);
    const auto error = opened ? std::nullopt : std::optional(opened.error());
    mailbox_->post([tell = events.opened, error] { tell(error); });
    if (error) return connection_->close();
    opened_.reset(new Opened{.session = session, .events = std::move(events)});
    // Another program held the camera when it was identified.
    if (!facts_.isComplete) {
        insistOnSerial(*session);
        tellFacts();
    }
    if (listSession(*opened_)) {
        mailbox_->post(
            [tell = opened_->events.listed, catalogue = catalogueOf(opened_->listing)]() mutable {
                tell(std::move(catalogue));
            });
    } else if (!session->hasEnded()) {
        reportLost();
    }
}

bool CameraWorker::listSession(Opened& opened) {
    using Clock = std::chrono::steady_clock;
    Clock::time_point told = Clock::now();
    CameraLister lister(
        *connection_, [&] { return opened.session->hasEnded(); },
        [&](std::size_t files) {
            if (Clock::now() - told < timing_.telling) return;
            told = Clock::now();
            mailbox_->post([tell = opened.events.filesSeen, files] { tell(files); });
        });
    auto listing = lister.list();
    if (!listing) return false;
    opened.listing = *std::move(listing);
    opened.openings = connection_->openings();
    return true;
}

void CameraWorker::loadFile(const std::shared_ptr<UsbSession>& session,
                            const std::shared_ptr<UsbLoad>& load) {
    if (session->hasEnded()) return;
    CameraLoader loader(*connection_, *session, *load);
    switch (loader.load()) {
        case CameraLoader::Outcome::Loaded:
            return deliver(*session, load, loader.file(), wholeness(*load));
        case CameraLoader::Outcome::Failed:
            return deliver(*session, load, loader.file(), std::unexpected(loader.error()));
        case CameraLoader::Outcome::Over:
            break;
    }
    session->ifOpen(load->request.directory, [&] { loader.file().reset(); });
    if (loader.file()) loader.file()->disown();
    // Whoever hears of it ends the session, and with it this download: a run must not go on
    // to its next files before it knows.
    if (!session->hasEnded()) reportLost();
}

/// A camera may list a shot before it has written all of it, and tells then that the file has
/// changed: what was loaded until then is not all.
Result<> CameraWorker::wholeness(const UsbLoad& load) {
    bool changed = tellsOfNewShots() && takeNews(UsbTiming::Milliseconds::zero());
    // What it had to tell is lost when it is opened anew.
    const bool isHeard = connection_->isInStep() && opened_->openings == connection_->openings();
    const auto now = isHeard ? std::nullopt : describe(load.folder, load.entry.name);
    if (now) changed = updateListing(opened_->listing, {{load.folder, {*now}}}) || changed;
    if (changed) tellOfChange();
    if (!isHeard && (!now || now->error != 0)) {
        return std::unexpected(
            Error{"Die Kamera sagt nicht mehr, ob das die ganze Datei ist; bitte noch einmal "
                  "importieren"});
    }
    const CardEntry* known = listed(load.folder, load.entry.name);
    if (known != nullptr && known->size == load.entry.size) return {};
    return std::unexpected(
        Error{"Die Kamera hat diese Datei noch geschrieben; bitte noch einmal importieren"});
}

void CameraWorker::deliver(UsbSession& session, const std::shared_ptr<UsbLoad>& load,
                           std::unique_ptr<PartialFile>& file, Result<> loaded) {
    const auto setDelivering = [this](bool delivering) {
        const std::lock_guard lock(mutex_);
        delivering_ = delivering;
        changed_.notify_all();
    };
    setDelivering(true);
    if (session.take(load)) {
        if (loaded) loaded = file->complete(modificationTime(load->entry));
        file.reset();
        if (loaded) {
            load->done(load->request.saveAs);
        } else {
            load->done(std::unexpected(loaded.error()));
        }
    } else if (file) {
        file->disown();
    }
    setDelivering(false);
}

bool CameraWorker::tellsOfNewShots() const {
    return opened_ && !opened_->session->hasEnded() &&
           opened_->failedQuestions < mostFailedQuestions && !isControlledByAsking(place_);
}

std::optional<GphotoCamera::NewFile> CameraWorker::newShot(UsbTiming::Milliseconds patience) {
    auto [code, file] = connection_->cameraInStep().newFile(patience);
    switch (connection_->fault(code)) {
        case CameraFault::None:
            opened_->failedQuestions = 0;
            return file;
        case CameraFault::Busy:
        case CameraFault::Transfer:
            ++opened_->failedQuestions;
            break;
        case CameraFault::Gone:
            if (!opened_->session->hasEnded()) reportLost();
            [[fallthrough]];
        default:
            opened_->failedQuestions = mostFailedQuestions;
    }
    return std::nullopt;
}

const CardEntry* CameraWorker::listed(const std::string& folder, const std::string& name) const {
    const auto found = opened_->listing.find(folder);
    if (found == opened_->listing.end()) return nullptr;
    const auto entry = std::ranges::find(found->second, name, &CardEntry::name);
    const bool isThere = entry != found->second.end() && entry->type != CardFileType::Other;
    return isThere ? &*entry : nullptr;
}

/// What the camera says of a file now.
std::optional<CardEntry> CameraWorker::describe(const std::string& folder,
                                                const std::string& name) {
    CameraLister lister(
        *connection_, [this] { return opened_->session->hasEnded(); }, [](std::size_t) {});
    return lister.entry(folder, name);
}

/// Whether it was listed and is said to have come, for the first time: of such a file the library
/// keeps what it knew. A camera may say that of all files whenever it was opened.
bool CameraWorker::isToldTwice(const GphotoCamera::NewFile& file) {
    return !file.hasChanged && listed(file.folder, file.name) != nullptr &&
           opened_->toldTwice.insert(file.folder + "/" + file.name).second;
}

/// Lists all once more when the camera was opened anew: of what came before that, it never tells.
/// Answers whether there was something. Begins again later when there is other work to do.
bool CameraWorker::addUntoldShots() {
    if (opened_->openings == connection_->openings()) return false;
    CameraLister lister(
        *connection_, [this] { return opened_->session->hasEnded() || hasTasks(); },
        [](std::size_t) {});
    const auto found = lister.list();
    if (!found) return false;
    opened_->openings = connection_->openings();
    const bool isHealed = dropReadFolders(opened_->listing, *found);
    return updateListing(opened_->listing, *found) || isHealed;
}

bool CameraWorker::hasTasks() {
    const std::lock_guard lock(mutex_);
    return ending_ || !tasks_.empty();
}

/// Answers whether there was something that was not known.
bool CameraWorker::takeNews(UsbTiming::Milliseconds patience) {
    // Other work must not wait for a camera that tells of the same shot for ever.
    constexpr std::size_t mostAtOnce = 100;
    std::vector<GphotoCamera::NewFile> files;
    while (files.size() < mostAtOnce && !opened_->session->hasEnded()) {
        auto file = newShot(patience);
        if (!file) break;
        files.push_back(*std::move(file));
    }
    // Only now, for opened anew it tells no more of the others.
    const auto isToldTwice = [this](const auto& file) { return this->isToldTwice(file); };
    if (std::ranges::count_if(files, isToldTwice) != 0) connection_->distrust();
    CardListing found;
    for (const auto& file : files) {
        if (auto entry = describe(file.folder, file.name))
            found[file.folder].push_back(*std::move(entry));
    }
    return updateListing(opened_->listing, found);
}

void CameraWorker::askForNewShots() {
    constexpr UsbTiming::Milliseconds patience{50};
    bool changed = takeNews(patience);
    if (tellsOfNewShots() && connection_->isInStep()) changed = addUntoldShots() || changed;
    if (changed) tellOfChange();
}

void CameraWorker::tellOfChange() {
    mailbox_->post(
        [tell = opened_->events.changed, catalogue = catalogueOf(opened_->listing)]() mutable {
            tell(std::move(catalogue));
        });
}

void CameraWorker::reportLost() {
    mailbox_->post([lost = events_.lost] { lost(); });
}

}  // namespace bildkurier
