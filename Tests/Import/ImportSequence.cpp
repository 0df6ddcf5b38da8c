// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportSequence.h"

#include "FileName.h"
#include "Formatting.h"
#include "LocalDay.h"
#include "SftpUrl.h"

#include <fmt/format.h>
#include <rapidcheck.h>

#include <algorithm>
#include <cmath>
#include <ranges>
#include <utility>

namespace bildkurier {

namespace {

using namespace std::string_literals;

constexpr Duration speedInterval{0.25};
constexpr Duration watchInterval{0.5};
constexpr Duration retryInterval{5.0};
constexpr Duration serverRetryInterval{60.0};
constexpr auto goesOn = "Kamera getrennt. Der Import geht weiter, sobald sie wieder verbunden ist.";
constexpr auto gaveUp =
    "Import gestoppt: Die Kamera trennt sich wiederholt, ohne dass etwas ankommt. Originalkabel "
    "direkt am Mac probieren (ohne Hub) und Akku der Kamera prüfen.";
constexpr auto cancelling = "Breche nach der aktuellen Datei ab …";
constexpr auto searching = "Suche Kamera … (einschalten und per USB verbinden)";
constexpr auto refusedSession =
    "Verbindung fehlgeschlagen: Die Kamera ist belegt. „Digitale Bilder“, „Fotos“ und "
    "Canon-Software schließen, dann Kamera neu verbinden.";
constexpr auto chooseFolderStatus = "Zielordner wählen: unter Ziel auf „Ändern …“ klicken.";
constexpr auto nameServerStatus =
    "Server angeben: unter Ziel den Rechner eintragen, dann „Verbinden und prüfen“.";
constexpr auto returned = " wieder verbunden. Import wird fortgesetzt …";
constexpr auto summaryStart = "Fertig: ";
constexpr auto nothingMissing = "Nach der Trennung fehlt nichts mehr im Zielordner.";
constexpr auto allPresent = "Auto-Import: alle Dateien dieser Kamera sind bereits im Zielordner.";
constexpr auto notWritable =
    "Auto-Import ausgesetzt: Zielordner fehlt oder ist nicht beschreibbar.";
constexpr auto unnamedServer =
    "Auto-Import ausgesetzt: Server angeben: unter Ziel den Rechner eintragen, dann „Verbinden und "
    "prüfen“.";
constexpr auto windingUp = "Warte auf die Datei, die beim Abbruch des Imports noch unterwegs war …";
constexpr auto noRoom = "Auto-Import ausgesetzt: zu wenig freier Platz im Zielordner.";
constexpr auto anotherRuns = "Es läuft schon ein Import.";
constexpr auto cannotWrite = "Kann Zielordner nicht beschreiben: ";
constexpr auto otherHostKey =
    "Der Server zeigt einen anderen Schlüssel als beim ersten Verbinden. Nur wenn der Server neu "
    "eingerichtet wurde: gespeicherten Server-Schlüssel vergessen.";
constexpr auto keyForgotten = "Server-Schlüssel vergessen. Jetzt erneut „Verbinden und prüfen“.";
/// Of all cameras that cannot tell yet who they are.
constexpr auto commonPlace = "persistent:usb";
constexpr std::int64_t plenty = 1'000'000'000'000;

const std::array destinations = {"/bilder"s, "/archiv"s, "/fehlt"s};

/// The same for all steps whose camera, file or the like is `which`.
template <class Range>
auto& pick(Range& range, std::size_t which) {
    return range[which % std::size(range)];
}

bool canBeLoaded(const Picture& picture) {
    return std::ssize(picture.contents) == picture.size &&
           isPlainFileName(picture.name.value_or("unbenannt"));
}

bool isAmong(const std::string& text, std::initializer_list<const char*> texts) {
    return std::ranges::find(texts, text) != texts.end();
}

}  // namespace

ImportSequence::ImportSequence(const Beginning& beginning) {
    const auto day = [this](int days) { return loop_.date() + std::chrono::days(days); };
    const auto picture = [](std::optional<std::string> name, const std::string& contents,
                            std::optional<Date> shot) {
        return Picture{std::move(name), contents, std::ssize(contents), shot};
    };
    Picture tooLong = picture("E.JPG", "1:E", day(2));
    tooLong.size = 9;
    devices_[0] = {"serial:0",
                   {picture("A.JPG", "0:A", day(1)), picture("B.CR3", "0:Bb", day(2)),
                    picture("B.CR3", "0:Bbbb", day(1)), picture("a.jpg", "0:a", day(2)),
                    picture(std::nullopt, "0:-", {}), picture("C.MP4", "0:Ccc", {})},
                   nullptr};
    devices_[1] = {"serial:1",
                   {picture("A.JPG", "1:A+", day(1)), picture("B.CR3", "1:Bb", day(3)),
                    picture("../D.JPG", "1:D", day(2)), tooLong},
                   nullptr};
    devices_[2] = {
        std::nullopt, {picture("F.JPG", "2:F", day(1)), picture("G.CR3", "2:G", day(3))}, nullptr};
    for (const auto& folder : {destinations[0], destinations[1]}) store_->folders.insert(folder);
    store_->capacity = plenty;
    settings_->storedDestination = Url::file(destinations[0]);
    settings_->storedAutoImport = beginning.trusts;
    if (beginning.trusts) settings_->storedIdentity = devices_[0].identity;
    if (beginning.isNamed) settings_->storedHost = "nas";
    if (beginning.onServer) {
        settings_->storedKind = DestinationKind::sftp;
        settings_->storedPath = "server";
        serverDest_ = sftpURL(settings_->storedUser, settings_->storedHost, settings_->storedPath);
        seenDest_ = serverDest_;
    }
    make();
}

void ImportSequence::make() {
    auto runner = std::make_unique<ImportRunner>(scans_, main_, loop_);
    runner_ = runner.get();
    autoImport_ = std::make_shared<AutoImport>(settings_, scans_);
    model_ = std::make_shared<ImportModel>(ImportModel::Collaborators{.browser = nullptr,
                                                                      .fileStore = scans_,
                                                                      .settings = settings_,
                                                                      .folderPicker = picker_,
                                                                      .runner = std::move(runner),
                                                                      .autoImport = autoImport_,
                                                                      .sleepBlocker = sleepBlocker_,
                                                                      .folderAccess = access_,
                                                                      .runLock = lock_,
                                                                      .keyring = keyring_},
                                           main_, loop_);
    observation_ = model_->observe([this] { observed(); });
}

void ImportSequence::happen(const ImportStep& step) {
    static constexpr std::array durations = {0.1, 0.25, 0.5, 1.0, 1.5, 3.0};
    static const std::array<std::optional<std::int64_t>, 4> capacities = {plenty, std::nullopt, 8,
                                                                          209'715'207};
    const auto which = static_cast<std::size_t>(step.which);
    Device& device = pick(devices_, which);
    switch (step.event) {
        case Event::plugIn:
            plugIn(device);
            break;
        case Event::unplug:
            unplug(which);
            break;
        case Event::connect:
            connect(device);
            break;
        case Event::replug:
            replug();
            break;
        case Event::tellLate:
            device.tellsLate = !device.tellsLate;
            break;
        case Event::identify:
            identify(which);
            break;
        case Event::openSession:
            openSession(which, std::nullopt);
            break;
        case Event::refuseSession:
            openSession(which, Error{"Die Kamera ist belegt"});
            break;
        case Event::catalogReady:
            catalogReady(which);
            break;
        case Event::cardChanges:
            cardChanges(device, which < 8);
            break;
        case Event::deliver:
        case Event::fail:
        case Event::truncate:
        case Event::grow:
            download(step.event, which);
            break;
        case Event::deliverAll:
            deliverAll();
            break;
        case Event::answerLate:
            answerLate(which);
            break;
        case Event::select:
            select(which);
            break;
        case Event::start:
            start();
            break;
        case Event::cancel:
            cancel();
            break;
        case Event::reload:
            access_->restoreGrants = which % 2 == 0;
            access_->restorable.reset();
            if (which % 4 < 2) access_->restorable = Url::file(pick(destinations, which));
            model_->reload();
            break;
        case Event::toggleFilter:
            ++filterings_;
            model_->setUseFromDate(!model_->useFromDate());
            break;
        case Event::moveSlider:
            moveSlider(step.which * 0.5 - 1);
            break;
        case Event::switchAutoImport:
            switchAutoImport(which % 3 != 0);
            break;
        case Event::chooseFolder:
            chooseFolder(which);
            break;
        case Event::changeLayout:
            model_->setByDate(which % 2 == 0);
            model_->setByType(which % 4 < 2);
            break;
        case Event::advance:
            advance(Duration(pick(durations, which)));
            break;
        case Event::stepMain:
            loop_.stepMain();
            break;
        case Event::stepBackground:
            loop_.stepBackground();
            break;
        case Event::settle:
            loop_.settle();
            break;
        case Event::loseGrant:
            access_->granted = false;
            ungranted_ = true;
            break;
        case Event::changeCapacity:
            store_->capacity = pick(capacities, which);
            break;
        case Event::storeFails:
            storeFails(which);
            break;
        case Event::storeRecovers:
            failing_->failAt.reset();
            break;
        case Event::removeFile:
            removeFile(which);
            break;
        case Event::addFile:
            addFile(device, which);
            break;
        case Event::fillForm:
            fillForm(which);
            break;
        case Event::applyServer:
            applyServer();
            break;
        case Event::checkServer:
            checkServer();
            break;
        case Event::forgetServer:
            forgetServer();
            break;
        case Event::switchKind:
            switchKind();
            break;
        case Event::changeHostKey:
            server_->hostKey = fmt::format("SHA256:{} (ED25519)", which % 2);
            break;
        case Event::refuseConnections:
            server_->refusal.reset();
            if (which % 3 == 0) server_->refusal = "Connection refused";
            server_->isWritable = which % 3 != 1;
            break;
        case Event::breakListings:
            server_->breakOfListings.reset();
            if (which % 3 != 0) server_->breakOfListings = which % 3 == 1 ? "Broken pipe" : "Reset";
            break;
        case Event::changeOwnKey:
            keyring_->key.reset();
            if (which % 3 != 0) keyring_->key = "ssh-ed25519 A";
            break;
        case Event::expectCamera:
            expectCamera(device);
            break;
        case Event::anotherProcess:
            lock_->takenByAnother = which % 2 == 0 && !lock_->held;
            break;
        case Event::duringMove:
            slow_->meanwhile = [this, which] { happenDuringMove(which); };
            break;
        case Event::fillLog:
            for (int line = 0; line < 200; ++line) model_->addLog("Zeile");
            break;
    }
    check();
}

// What happens

void ImportSequence::plugIn(Device& device) {
    if (device.attached) return;
    const auto camera =
        std::make_shared<ScriptedCamera>(fmt::format("{}", connections_.size()), device.identity);
    for (const auto& picture : device.card) {
        camera->add(std::make_shared<ScriptedFile>(store_, picture));
    }
    if (device.tellsLate) camera->isOnlyKnownBy(commonPlace);
    device.attached = camera;
    attached_.push_back(camera);
    connections_.push_back(camera);

    const bool importing = phase_ == Phase::importing;
    const Recognition found = recognised(*camera);
    const auto selected = model_->selectedID();
    sawReturn_ = false;
    model_->cameraBrowserDidAdd(camera);
    RC_ASSERT(sawReturn_ == found.resumes);
    if (!importing && (found.isTakenUp() || !selected)) {
        RC_ASSERT(held() == camera);
        RC_ASSERT(model_->phase() == Phase::connecting);
        RC_ASSERT(model_->status() == fmt::format("Verbinde mit Kamera {} …", camera->id()));
    } else {
        RC_ASSERT(held() != camera);
        if (selected) RC_ASSERT(model_->selectedID() == selected);
    }
}

/// A camera that is attached can tell by now who it is.
void ImportSequence::identify(std::size_t which) {
    std::vector<std::shared_ptr<ScriptedCamera>> late;
    std::ranges::copy_if(attached_, std::back_inserter(late),
                         [](const auto& camera) { return !camera->isIdentityFinal(); });
    if (late.empty()) return;
    const auto camera = pick(late, which);
    camera->identify();
    const Recognition found = recognised(*camera);
    const auto tell = [&] { model_->cameraBrowserDidIdentify(camera); };
    if (phase_ == Phase::importing || !found.isTakenUp()) return checkNothingHappens(tell);
    const Phase before = phase_;
    const bool isRead = camera == held() && before != Phase::noCamera;
    sawReturn_ = false;
    tell();
    RC_ASSERT(sawReturn_ == found.resumes);
    RC_ASSERT(held() == camera);
    if (!isRead) {
        RC_ASSERT(model_->phase() == Phase::connecting);
    } else if (before != Phase::ready) {
        RC_ASSERT(model_->phase() == before);
    } else if (!needsChoice() && !needsServer()) {
        RC_ASSERT(model_->phase() == Phase::checking);
    }
}

ImportSequence::Recognition ImportSequence::recognised(const ScriptedCamera& camera) {
    Recognition found;
    found.isAwaited =
        phase_ != Phase::importing && pendingResume_ && camera.isKnownAs(pendingResume_->identity);
    found.resumes = found.isAwaited && camera.isIdentityFinal();
    if (found.resumes) resumeReady_ = true;
    if (found.isAwaited) return found;
    if (expectedTrust_ && camera.isIdentityFinal() && camera.isKnownAs(*expectedTrust_)) {
        expectedTrust_.reset();
        settings_->storedAutoImport = true;
        settings_->storedIdentity = camera.identity();
    }
    found.imports = isTrusted(camera);
    if (found.imports) pendingAutoImport_ = camera.identity();
    return found;
}

void ImportSequence::unplug(std::size_t which) {
    if (attached_.empty()) return;
    const auto camera = pick(attached_, which);
    const bool wasHeld = camera == held();
    std::erase(attached_, camera);
    for (auto& device : devices_) {
        if (device.attached == camera) device.attached.reset();
    }
    camera->unplug();
    const Shown before = shown();
    if (!wasHeld) {
        model_->cameraBrowserDidRemove(camera);
        Shown expected = before;
        --expected.cameras;
        RC_ASSERT(shown() == expected);
        return;
    }

    losesCamera_ = true;
    pendingAutoImport_.reset();
    std::deque<std::string> log = before.log;
    Status status;
    if (run_) {
        log.push_back(fmt::format("✗ {} Kamera getrennt, {} von {} geladen.", time(), run_->loaded,
                                  run_->files.size()));
        fruitless_ = run_->loaded == 0 ? fruitless_ + 1 : 0;
        pendingResume_.reset();
        if (run_->cancelled) {
            status.reset();
        } else if (camera->identity() && fruitless_ < 3) {
            pendingResume_ = {*camera->identity(), run_->ignoresDateFilter};
            status = goesOn;
        } else {
            status = gaveUp;
            log.push_back("✗ "s + gaveUp);
        }
    }
    while (log.size() > 500) log.pop_front();
    if (run_) {
        lost_.push_back({*std::exchange(run_, std::nullopt), delivered_});
    }
    model_->cameraBrowserDidRemove(camera);
    losesCamera_ = false;
    RC_ASSERT(model_->log() == log);
    if (status) RC_ASSERT(model_->status() == *status);
    if (attached_.empty()) {
        RC_ASSERT(model_->phase() == Phase::noCamera);
        if (!status) RC_ASSERT(model_->status() == searching);
    } else {
        RC_ASSERT(model_->phase() == Phase::connecting);
        RC_ASSERT(held() == attached_.front());
    }
}

void ImportSequence::connect(Device& device) {
    plugIn(device);
    check();
    const auto camera = device.attached;
    if (held() != camera || phase_ == Phase::importing) return;
    if (camera->asked > 0) camera->answer(std::nullopt);
    check();
    if (camera->answered > 0) readCatalog(*camera);
    check();
    loop_.settle();
}

void ImportSequence::replug() {
    const auto device = std::ranges::find(devices_, held(), &Device::attached);
    if (!held() || device == devices_.end()) return;
    const auto place = std::ranges::find(attached_, held()) - attached_.begin();
    unplug(static_cast<std::size_t>(place));
    check();
    connect(*device);
}

/// The camera goes, the user takes another destination, perhaps, and the camera returns.
void ImportSequence::happenDuringMove(std::size_t which) {
    const auto device = std::ranges::find(devices_, held(), &Device::attached);
    if (!held() || device == devices_.end()) return;
    const auto place = std::ranges::find(attached_, held()) - attached_.begin();
    unplug(static_cast<std::size_t>(place));
    check();
    switch (which % 4) {
        case 0:
            chooseFolder(which / 4);
            break;
        case 1:
            switchKind();
            break;
        case 2:
            fillForm(which);
            checkServer();
            break;
        default:
            break;
    }
    check();
    connect(*device);
    check();
    if (phase_ == Phase::ready) start();
    check();
}

void ImportSequence::expectCamera(const Device& device) {
    if (!device.identity || (device.attached && device.attached->isIdentityFinal())) return;
    expectedTrust_ = device.identity;
    checkNothingHappens([this] { model_->trustWhenConnected(*expectedTrust_); });
}

/// What it waited for is over, or is looked for once more.
void ImportSequence::noteRetry() {
    const auto camera = autoImport_->waitingCamera(model_->cameras(), nullptr);
    if (!postponed_ || !camera) return;
    pendingAutoImport_ = camera->identity();
    postponed_ = false;
}

void ImportSequence::openSession(std::size_t which, const std::optional<Error>& error) {
    std::vector<std::shared_ptr<ScriptedCamera>> asked;
    std::ranges::copy_if(connections_, std::back_inserter(asked),
                         [](const auto& camera) { return camera->asked > 0; });
    if (asked.empty()) return;
    const auto camera = pick(asked, which);
    if (camera != held() || phase_ == Phase::importing) {
        return checkNothingHappens([&] { camera->answer(error); });
    }
    camera->answer(error);
    RC_ASSERT(model_->phase() == (error ? Phase::noCamera : Phase::reading));
    RC_ASSERT(model_->status() == (error ? refusedSession : "Lese Dateiliste der Karte(n) …"));
}

void ImportSequence::catalogReady(std::size_t which) {
    std::vector<std::shared_ptr<ScriptedCamera>> open;
    std::ranges::copy_if(connections_, std::back_inserter(open),
                         [](const auto& camera) { return camera->answered > 0; });
    if (open.empty()) return;
    const auto camera = pick(open, which);
    if (camera != held() || phase_ == Phase::importing) {
        return checkNothingHappens([&] { camera->catalogReady(); });
    }
    const auto storedDay = settings_->storedFromDay;
    readCatalog(*camera);
    RC_ASSERT(camera->read == camera->card);
    const auto& days = model_->cameraDays();
    const auto chosen =
        std::ranges::find_if(days, [&](Date day) { return dayFormatter().text(day) == storedDay; });
    const auto index = chosen == days.end() ? std::ssize(days) - 1 : chosen - days.begin();
    RC_ASSERT(model_->fromDayIndex() == static_cast<double>(std::max<std::ptrdiff_t>(index, 0)));
    if (needsServer()) {
        RC_ASSERT(model_->phase() == Phase::ready);
    } else if (!needsChoice()) {
        RC_ASSERT(model_->phase() == Phase::checking);
        const bool waits = runner_->isWindingUp(model_->dest());
        RC_ASSERT(model_->status() == (waits ? windingUp : "Prüfe Zielordner …"));
    } else {
        RC_ASSERT(model_->phase() == Phase::ready);
        RC_ASSERT(model_->status() == chooseFolderStatus);
    }
}

void ImportSequence::readCatalog(ScriptedCamera& camera) {
    readsCatalog_ = true;
    camera.catalogReady();
    readsCatalog_ = false;
}

void ImportSequence::cardChanges(Device& device, bool grows) {
    const auto& camera = device.attached;
    if (grows) {
        const std::string contents = fmt::format("neu {}", ++pictures_);
        device.card.push_back({fmt::format("N{}.JPG", pictures_), contents, std::ssize(contents),
                               loop_.date() + std::chrono::days(pictures_ % 4)});
        if (camera) camera->add(std::make_shared<ScriptedFile>(store_, device.card.back()));
    } else if (!device.card.empty()) {
        device.card.pop_back();
        if (camera) camera->card.pop_back();
    }
    if (camera) checkNothingHappens([&] { camera->catalogChanged(); });
}

void ImportSequence::download(Event how, std::size_t which) {
    const auto waiting = waitingFiles(false);
    if (waiting.empty()) return;
    ScriptedFile& file = *waiting.front();
    switch (how) {
        case Event::grow:
            return file.grow();
        case Event::fail:
            return file.fail();
        case Event::truncate:
            return file.truncate();
        default:
            break;
    }
    delivered_ = waiting.front();
    file.deliver(which % 4 == 3 ? std::optional("anders.tmp"s) : std::nullopt);
}

void ImportSequence::deliverAll() {
    loop_.settle();
    while (!waitingFiles(false).empty()) {
        download(Event::deliver, 0);
        loop_.settle();
    }
}

void ImportSequence::answerLate(std::size_t which) {
    loop_.settle();
    check();
    const auto waiting = waitingFiles(true);
    if (waiting.empty()) return;
    checkNothingHappens([&] {
        which % 2 == 0 ? pick(waiting, which)->deliver() : pick(waiting, which)->fail();
        loop_.settle();
    });
}

void ImportSequence::select(std::size_t which) {
    const std::size_t place = which % (attached_.size() + 1);
    const auto id = place < attached_.size() ? std::optional(attached_[place]->id()) : std::nullopt;
    const bool same = id == model_->selectedID();
    if (same) return checkNothingHappens([&] { model_->setSelectedID(id); });
    if (phase_ == Phase::importing) {
        Shown expected = shown();
        expected.selectedID = id;
        model_->setSelectedID(id);
        RC_ASSERT(shown() == expected);
        selectionDiffers_ = true;
        return;
    }
    model_->setSelectedID(id);
    RC_ASSERT(model_->phase() == (id ? Phase::connecting : Phase::noCamera));
    RC_ASSERT(model_->status() == (id ? fmt::format("Verbinde mit Kamera {} …", *id) : searching));
    RC_ASSERT(model_->newFiles().empty());
}

void ImportSequence::start() {
    if (phase_ != Phase::ready || model_->newFiles().empty()) {
        return checkNothingHappens([this] { model_->startImport(); });
    }
    userStarts_ = true;
    model_->startImport();
    userStarts_ = false;
    if (needsChoice()) {
        RC_ASSERT(model_->status() == chooseFolderStatus);
        RC_ASSERT(model_->phase() == Phase::ready);
    } else if (needsServer()) {
        RC_ASSERT(model_->status() == nameServerStatus);
        RC_ASSERT(model_->phase() == Phase::ready);
    } else if (model_->destUnlisted()) {
        RC_ASSERT(model_->status() == ImportModel::unlistedStatus);
        RC_ASSERT(model_->phase() == Phase::ready);
    } else if (lock_->takenByAnother) {
        RC_ASSERT(model_->status() == anotherRuns);
        RC_ASSERT(model_->phase() == Phase::ready);
    } else if (model_->phase() == Phase::ready) {
        RC_ASSERT(model_->status().starts_with(cannotWrite));
        RC_ASSERT(model_->log().empty());
    } else {
        RC_ASSERT(model_->phase() == Phase::importing);
        RC_ASSERT(model_->log().empty());
        RC_ASSERT(model_->speed() == SpeedMeter::Reading());
    }
}

void ImportSequence::cancel() {
    pendingResume_.reset();
    postponed_ = false;
    if (run_) run_->cancelled = true;
    model_->cancelImport();
    RC_ASSERT(model_->phase() == phase_);
    RC_ASSERT(model_->status() == cancelling);
    userSpoke_ = true;
}

void ImportSequence::moveSlider(double index) {
    if (std::trunc(index) == std::trunc(model_->fromDayIndex())) {
        return checkNothingHappens([&] { model_->setFromDayIndex(index); });
    }
    ++filterings_;
    model_->setFromDayIndex(index);
    RC_ASSERT(model_->fromDayIndex() == index);
    const auto day = model_->fromDaySelected();
    if (day) RC_ASSERT(settings_->storedFromDay == dayFormatter().text(*day));
}

void ImportSequence::switchAutoImport(bool on) {
    const auto camera = held();
    const Shown before = shown();
    const bool waited = model_->isPostponed();
    model_->setAutoImportEnabled(on);
    const bool works = on && camera && camera->identity() && camera->isIdentityFinal();
    Shown expected = before;
    if (works) {
        expected.status =
            fmt::format("Auto-Import für Kamera {} aktiviert. Er startet beim nächsten Verbinden.",
                        camera->id());
        RC_ASSERT(settings_->storedIdentity == camera->identity());
        userSpoke_ = true;
    } else {
        pendingAutoImport_.reset();
        // It promises nothing any more.
        if (waited && !model_->isPostponed()) expected.status = model_->status();
    }
    RC_ASSERT(shown() == expected);
    RC_ASSERT(model_->autoImportEnabled() == works);
}

void ImportSequence::chooseFolder(std::size_t which) {
    const std::size_t place = which % (destinations.size() + 1);
    picker_->choice.reset();
    if (place < destinations.size()) picker_->choice = Url::file(destinations[place]);
    if (!picker_->choice) return checkNothingHappens([this] { model_->chooseDest(); });
    model_->chooseDest();
    RC_ASSERT(model_->dest() == *picker_->choice);
}

void ImportSequence::fillForm(std::size_t which) {
    static const std::array hosts = {"nas"s, "nas:2222"s, " zweiter\t"s, " "s};
    static const std::array paths = {"server"s, "/server"s, " /neu/server "s};
    checkNothingHappens([&] {
        model_->setSftpUser(which % 2 == 0 ? "anna" : "");
        model_->setSftpHost(pick(hosts, which));
        model_->setSftpPath(pick(paths, which / 3));
    });
}

void ImportSequence::applyServer() {
    checkNothingHappens([this] { model_->applySFTPDestination(); });
    applied_.push_back(formURL());
    RC_ASSERT(model_->sftpUser() == settings_->storedUser);
    RC_ASSERT(model_->sftpHost() == settings_->storedHost);
    RC_ASSERT(model_->sftpPath() == settings_->storedPath);
    RC_ASSERT((model_->sftpChecking() && !model_->sftpStatus()));
}

/// One check from beginning to end.
void ImportSequence::checkServer() {
    loop_.settle();
    check();
    const Url before = model_->dest();
    applyServer();
    const Url url = formURL();
    const FakeSSHKeyring::Server name{url.host, url.port};
    const bool hasKey = keyring_->hasKey();
    const auto known = keyring_->hosts.find(name);
    const bool isKnown = known != keyring_->hosts.end();
    const bool fails = failing_->failAt.has_value();
    const bool mismatch =
        !server_->refusal && hasKey && isKnown && known->second != server_->hostKey;
    const bool isMet = hasKey && (isKnown || (!server_->refusal && !url.host.empty()));
    loop_.settle();
    RC_ASSERT(!model_->sftpChecking());
    RC_ASSERT(model_->sftpHostIsNew() == (isMet && !isKnown));
    RC_ASSERT(model_->sftpHostFingerprint() ==
              (isMet ? std::optional(keyring_->hosts.at(name)) : std::nullopt));
    RC_ASSERT(model_->sftpHostKeyMismatch() == mismatch);
    const auto& status = model_->sftpStatus();
    if (url.host.empty()) {
        RC_ASSERT(status == "Ordner lässt sich nicht anlegen: Kein Rechner angegeben");
    } else if (server_->refusal) {
        RC_ASSERT(status == "Ordner lässt sich nicht anlegen: Connection refused");
    } else if (!mismatch && !fails) {
        RC_ASSERT(status == (server_->isWritable ? "Verbunden mit " + model_->sftpHost() + "."
                                                 : "Zielordner ist nicht beschreibbar."));
    }
    RC_ASSERT(model_->dest() == (model_->sftpConnected() ? url : before));
}

void ImportSequence::forgetServer() {
    checkNothingHappens([this] { model_->forgetSFTPHostKey(); });
    const Url server = formURL();
    RC_ASSERT(!keyring_->hosts.contains({server.host, server.port}));
    RC_ASSERT(model_->sftpStatus() == keyForgotten);
}

void ImportSequence::switchKind() {
    switchesKind_ = true;
    const bool toServer = model_->destinationKind() == DestinationKind::folder;
    if (toServer) {
        serverDest_ = sftpURL(settings_->storedUser, settings_->storedHost, settings_->storedPath);
    }
    model_->setDestinationKind(toServer ? DestinationKind::sftp : DestinationKind::folder);
    switchesKind_ = false;
    RC_ASSERT(model_->destIsSFTP() == toServer);
}

/// What waits for a list of the server looks there again, and no oftener than it should.
void ImportSequence::advance(Duration duration) {
    const int scans = scans_->scans;
    const bool waits = phase_ == Phase::ready && main_.repeating(serverRetryInterval) == 1 &&
                       !lock_->takenByAnother && !needsServer();
    loop_.advance(duration);
    if (!waits || duration < serverRetryInterval) return;
    RC_ASSERT((scans_->scans > scans || !model_->isPostponed()));
}

void ImportSequence::storeFails(std::size_t which) {
    failing_->failAt = failing_->calls + which % 3;
    failing_->forGood = which % 2 == 0;
    failing_->failsAfterwards = which % 4 < 2;
}

void ImportSequence::removeFile(std::size_t which) {
    loop_.settle();
    const auto paths = importedPaths(model_->dest().path);
    if (paths.empty()) return;
    store_->files.erase(pick(paths, which));
    meddled_ = true;
}

void ImportSequence::addFile(Device& device, std::size_t which) {
    loop_.settle();
    if (device.card.empty()) return;
    const Picture& picture = pick(device.card, which);
    const Url target = model_->dest().appending(picture.name.value_or("Ohne Namen"));
    if (!isPlainFileName(target.lastComponent()) || store_->fileExists(target)) return;
    store_->files[target.path] = picture.contents;
    meddled_ = true;
}

void ImportSequence::finish() {
    failing_->failAt.reset();
    store_->capacity = plenty;
    lock_->takenByAnother = false;
    server_->refusal.reset();
    server_->breakOfListings.reset();
    slow_->meanwhile = nullptr;
    while (std::ranges::any_of(attached_,
                               [](const auto& camera) { return !camera->isIdentityFinal(); })) {
        identify(0);
        check();
    }
    for (auto& device : devices_) device.tellsLate = false;
    // What waits for the other process or for the server goes on.
    advance(model_->isPostponed() ? serverRetryInterval : retryInterval);
    check();
    deliverAll();
    check();
    RC_ASSERT(!run_);

    plugIn(devices_[0]);
    model_->setUseFromDate(false);
    picker_->choice = Url::file(destinations[0]);
    model_->chooseDest();
    model_->setSelectedID(std::nullopt);
    model_->setSelectedID(attached_.front()->id());
    RC_ASSERT(held() == attached_.front());
    // What was pending takes its turn first, and may lead to another camera.
    for (int turn = 0; turn < 3 && phase_ != Phase::ready; ++turn) {
        while (held()->asked > 0) held()->answer(std::nullopt);
        readCatalog(*held());
        deliverAll();
        check();
    }
    const auto camera = held();
    start();
    deliverAll();
    check();

    RC_ASSERT(model_->phase() == Phase::ready);
    std::set<std::string> contents;
    for (const auto& path : importedPaths(model_->dest().path)) {
        contents.insert(store_->files.at(path));
    }
    FileKeys keys = store_->existingFileKeys(model_->dest());
    // What had to give way to a file of its name is there by its contents only.
    for (const auto& file : camera->card) {
        if (contents.contains(file->picture.contents)) {
            keys.insert(fileKey(file->picture.name.value_or(""), file->picture.size));
        }
    }
    for (const auto& file : camera->card) {
        if (!file->picture.name || !canBeLoaded(file->picture)) continue;
        RC_ASSERT(keys.contains(fileKey(*file->picture.name, file->picture.size)));
    }
    if (!meddled_) checkNothingIsDoubled();
}

/// No two files are the same, but those that had to give way to others and were not recognised.
void ImportSequence::checkNothingIsDoubled() const {
    for (const auto& folder : destinations) {
        std::set<std::string> contents;
        for (const auto& path : importedPaths(folder)) {
            const auto suffix = path.rfind('_');
            if (suffix == std::string::npos) {
                RC_ASSERT(contents.insert(store_->files.at(path)).second);
                continue;
            }
            const std::string original = path.substr(0, suffix) + path.substr(path.rfind('.'));
            const auto found = store_->files.find(original);
            RC_ASSERT((found == store_->files.end() || found->second != store_->files.at(path)));
        }
    }
}

void ImportSequence::leave() {
    const std::weak_ptr<ImportModel> model = model_;
    runner_ = nullptr;
    model_.reset();
    RC_ASSERT(model.expired());
    RC_ASSERT(loop_.timers() == 0);
    loop_.settle();  // what the background had been given before

    const auto effects = [this] {
        int calls = 0;
        for (const auto& camera : connections_) {
            calls += camera->calls;
            for (const auto& file : camera->taken) calls += file->downloads;
        }
        return std::tuple(calls, notifications_, store_->files, store_->folders,
                          settings_->storedDestination, settings_->storedFromDay,
                          settings_->storedAutoImport, sleepBlocker_->reason, sleepBlocker_->begun,
                          lock_->held);
    };
    const auto before = effects();
    for (const auto& camera : connections_) {
        camera->unplug();
        camera->answer(std::nullopt);
        camera->catalogReady();
        camera->catalogChanged();
        for (const auto& file : camera->taken) {
            if (file->isWaiting()) file->deliver();
        }
    }
    loop_.advance(Duration(10));
    RC_ASSERT(effects() == before);
    RC_ASSERT(loop_.timers() == 0);
}

// What is seen while it happens

void ImportSequence::observed() {
    ++notifications_;
    if (model_->phase() != phase_) {
        const Phase from = std::exchange(phase_, model_->phase());
        changed(from, phase_);
    }
    measured();
    noteDestination();
    noteTrouble();
    if (phase_ == Phase::checking) noteRetry();
    if (status_ != model_->status()) {
        status_ = model_->status();
        if (status_.ends_with(returned)) sawReturn_ = true;
        if (status_ == anotherRuns) refused_ = true;
        // A server without a name is never seen to be compared.
        if (status_ == unnamedServer) autoImportDecided_ = true;
        // The last word of every comparison with a folder that must be chosen again.
        if (status_ == chooseFolderStatus && !userStarts_) ++filterings_;
    }
    const auto& log = model_->log();
    RC_ASSERT(log.size() <= 500);
    const std::string* back = log.empty() ? nullptr : &log.back();
    const bool grown = back && (back != logBack_ || log.size() != logSize_);
    logSize_ = log.size();
    logBack_ = back;
    if (grown) logged(*back);
}

/// The speed is that of the run, and measured over all of it.
void ImportSequence::measured() {
    const auto& progress = model_->progress();
    const auto& speed = model_->speed();
    if (run_) run_->bytes = std::max(run_->bytes, progress.bytesDone + progress.currentBytes);
    if (speed == std::exchange(speed_, speed)) return;
    RC_ASSERT(run_);
    const double seconds = (loop_.now() - run_->began).count();
    const double average = seconds > 0 ? static_cast<double>(run_->bytes) / seconds : 0;
    RC_ASSERT((speed.average >= 0 && speed.average <= average * (1 + 1e-9)));
    RC_ASSERT((speed.current >= 0 && speed.current <= speed.peak));
}

/// What cannot be listed now has nothing left of what was listed before.
void ImportSequence::noteTrouble() {
    if (phase_ == Phase::ready && (needsChoice() || needsServer())) trouble_.reset();
}

/// No server becomes the destination but one that the user has applied and that is good.
void ImportSequence::noteDestination() {
    if (model_->dest() == seenDest_) return;
    seenDest_ = model_->dest();
    if (!model_->destIsSFTP() || switchesKind_) return;
    RC_ASSERT(model_->sftpConnected());
    RC_ASSERT(std::ranges::find(applied_, seenDest_) != applied_.end());
    serverDest_ = seenDest_;
}

void ImportSequence::changed(Phase from, Phase to) {
    noteScans();
    userSpoke_ = false;
    if (to == Phase::importing) {
        RC_ASSERT(from == Phase::ready);
        RC_ASSERT(!run_);
        RC_ASSERT(scans_->folder == model_->dest());
        run_ = {.files = model_->newFiles(),
                .dest = model_->dest(),
                .layout = {.byDate = model_->byDate(), .byType = model_->byType()},
                .began = loop_.now(),
                .present = scans_->keys,
                .firstStatus = model_->status(),
                .byUser = userStarts_};
        if (userStarts_ && !refused_) {
            RC_ASSERT(run_->files == missing(filterDay(), run_->present));
        }
    } else if (from == Phase::importing && to == Phase::ready) {
        RC_ASSERT(!runner_->isRunning());
        refused_ = true;
        run_.reset();
    } else if (from == Phase::importing) {
        RC_ASSERT((to == Phase::done || losesCamera_));
    } else if (from == Phase::checking && to == Phase::ready) {
        ++filterings_;
    }
    if (from == Phase::checking && to == Phase::ready && !readsCatalog_) {
        const Status found = model_->destIsSFTP() && !needsServer() ? scans_->trouble : Status();
        const bool isNews = found && (!model_->isPostponed() || found != trouble_);
        RC_ASSERT(std::exchange(toldTrouble_, false) == isNews);
        trouble_ = found;
    }
    if (to == Phase::done) {
        RC_ASSERT(from == Phase::importing);
        RC_ASSERT((run_ && (run_->byUser || run_->announced)));
        if (run_->loaded > 0) fruitless_ = 0;
        pendingResume_.reset();
        run_.reset();
        next_ = waitingCamera();
    }
    if (from == Phase::done) {
        RC_ASSERT((to == Phase::connecting) == (next_ != nullptr));
        RC_ASSERT((to == Phase::checking || to == Phase::ready || held() == next_));
    }
    if (to == Phase::checking) RC_ASSERT((from == Phase::ready || from == Phase::done || held()));
}

void ImportSequence::logged(const std::string& line) {
    if (line.starts_with("✓ ")) checkLoaded(line);
    if (line.find(" Fortsetzung nach Trennung: ") != std::string::npos) checkResumed(line);
    if (line.starts_with("↻ Auto-Import: ")) checkAutoImport();
    if (line.find(" Zielordner nicht vollständig aufgelistet: ") != std::string::npos) {
        RC_ASSERT((phase_ == Phase::checking && scans_->trouble && !toldTrouble_));
        RC_ASSERT(line == fmt::format("✗ {} Zielordner nicht vollständig aufgelistet: {}", time(),
                                      *scans_->trouble));
        toldTrouble_ = true;
    }
}

/// Whether the file that was on its way when `lost` ended is at the destination by now, and was
/// not told of before.
bool ImportSequence::hasArrivedLate(const LostRun& lost) const {
    const auto& [run, file] = lost;
    if (!file || std::ranges::find(run.files, file) == run.files.end()) return false;
    const Picture& picture = file->picture;
    const Url folder =
        run.layout.folder(run.dest, picture.shot.value_or(loop_.date()), picture.name);
    return !run.present.contains(fileKey(picture.name.value_or(""), picture.size)) &&
           std::ranges::any_of(store_->files, [&](const auto& entry) {
               return entry.first.starts_with(folder.path) && entry.second == picture.contents;
           });
}

void ImportSequence::checkLoaded(const std::string& line) {
    const bool isLate = !run_ || runner_->progress().done == run_->loaded;
    const auto lost = std::find_if(lost_.rbegin(), lost_.rend(),
                                   [this](const LostRun& one) { return hasArrivedLate(one); });
    RC_ASSERT((!isLate || lost != lost_.rend()));
    Run& run = isLate ? lost->run : *run_;
    if (isLate) fruitless_ = 0;
    const auto& file = isLate ? lost->file : delivered_;
    RC_ASSERT(file);
    RC_ASSERT(std::ranges::find(run.files, file) != run.files.end());
    const Picture& picture = file->picture;
    const Url folder =
        run.layout.folder(run.dest, picture.shot.value_or(loop_.date()), picture.name);
    const std::string start = "✓ " + folder.lastComponent() + "/";
    const std::string end = "  (" + formatBytes(picture.size) + ")";
    RC_ASSERT((line.starts_with(start) && line.ends_with(end)));
    const std::string name = line.substr(start.size(), line.size() - start.size() - end.size());
    const std::string wanted = picture.name.value_or("unbenannt");
    const auto [base, extension] = nameParts(wanted);
    RC_ASSERT(name.starts_with(base));
    RC_ASSERT(name.ends_with(extension));
    RC_ASSERT(store_->files.at(folder.appending(name).path) == picture.contents);
    RC_ASSERT(picture.size == std::ssize(picture.contents));
    RC_ASSERT(run.present.insert(fileKey(picture.name.value_or(""), picture.size)).second);
    if (name != wanted) {
        run.renamed[fileKey(wanted, picture.size)] = fileKey(name, picture.size);
    }
    ++run.loaded;
}

void ImportSequence::checkResumed(const std::string& line) {
    RC_ASSERT((run_ && !run_->byUser && !run_->announced));
    RC_ASSERT(canResume(*held()));
    run_->ignoresDateFilter = pendingResume_->ignoresDateFilter;
    const auto since = run_->ignoresDateFilter ? std::nullopt : filterDay();
    run_->present = presentToResume();
    if (lost_.back().run.dest == run_->dest) run_->renamed = lost_.back().run.renamed;
    RC_ASSERT(run_->files == missing(since, run_->present));
    RC_ASSERT(line == fmt::format("↻ {} Fortsetzung nach Trennung: noch {} Dateien.", time(),
                                  run_->files.size()));
    run_->announced = true;
    pendingResume_.reset();
    resumeReady_ = false;
}

void ImportSequence::checkAutoImport() {
    RC_ASSERT((run_ && !run_->byUser && !run_->announced));
    RC_ASSERT(model_->log().size() == 1);
    RC_ASSERT(held()->identity() == pendingAutoImport_);
    RC_ASSERT((isTrusted(*held()) && held()->isIdentityFinal()));
    RC_ASSERT(run_->files == missing(std::nullopt, run_->present));
    run_->announced = true;
    run_->ignoresDateFilter = true;
    pendingAutoImport_.reset();
}

// What holds afterwards

void ImportSequence::noteScans() {
    if (std::exchange(scansSeen_, scans_->scans) == scans_->scans) return;
    refused_ = false;
    resumed_ = false;
    ungranted_ = !access_->granted;
}

void ImportSequence::check() {
    noteScans();
    takeUpPending();
    checkRun();
    checkCameras();
    checkCatalogue();
    checkDay();
    checkStatus();
    if (!held() || model_->selectedID() == held()->id()) selectionDiffers_ = false;
    RC_ASSERT(model_->autoImportEnabled() == settings_->storedAutoImport);
    RC_ASSERT(model_->useFromDate() == settings_->storedUseFromDate);
    RC_ASSERT(model_->byDate() == settings_->storedByDate);
    RC_ASSERT(model_->byType() == settings_->storedByType);
    checkDestination();
    checkServerState();
}

void ImportSequence::checkDestination() const {
    const Url& dest = model_->dest();
    RC_ASSERT(dest == (model_->destIsSFTP() ? serverDest_ : settings_->storedDestination));
    RC_ASSERT(model_->destNeedsChoice() == needsChoice());
    RC_ASSERT(model_->destinationKind() == settings_->storedKind);
    if (model_->destinationKind() == DestinationKind::folder) RC_ASSERT(!model_->destIsSFTP());
    RC_ASSERT(model_->destNeedsServer() == needsServer());
    if (phase_ == Phase::ready) RC_ASSERT(model_->destUnlisted() == trouble_.has_value());
}

void ImportSequence::checkServerState() const {
    const auto& status = model_->sftpStatus();
    const bool connected = model_->sftpConnected();
    RC_ASSERT(connected == (status && status->starts_with("Verbunden mit ")));
    RC_ASSERT(model_->sftpHostKeyMismatch() == (status == otherHostKey));
    if (model_->sftpHostIsNew() && status != keyForgotten) RC_ASSERT(model_->sftpHostFingerprint());
    if (status == keyForgotten) RC_ASSERT(!model_->sftpHostFingerprint());
    if (model_->sftpChecking()) RC_ASSERT((!status || status == keyForgotten));
    const bool isIdle = loop_.mainTasks() + loop_.backgroundTasks() == 0;
    if (isIdle) RC_ASSERT(!model_->sftpChecking());
}

/// What is pending is decided, one way or another, when the camera's files are compared with the
/// destination.
void ImportSequence::takeUpPending() {
    int filterings = std::exchange(filterings_, 0);
    const auto camera = held();
    // That a server has no name shows without any comparison.
    if (needsServer() && camera && (canResume(*camera) || pendingAutoImport_))
        filterings = std::max(filterings, 1);
    if (filterings > 0) autoImportDecided_ = false;
    if (phase_ != Phase::ready || !camera || camera->read.empty() || filterings == 0) return;
    const std::string& status = model_->status();
    if (canResume(*camera)) {
        resumed_ = true;
        // Another comparison at once has a status of its own.
        RC_ASSERT((filterings > 1 ||
                   isAmong(status, {nothingMissing, chooseFolderStatus, nameServerStatus,
                                    ImportModel::unlistedWaitStatus, anotherRuns}) ||
                   status.starts_with(cannotWrite)));
        if (isAmong(status, {anotherRuns, ImportModel::unlistedWaitStatus})) {  // it waits
            RC_ASSERT(main_.repeating(trouble_ ? serverRetryInterval : retryInterval) == 1);
            return;
        }
        pendingResume_.reset();
        resumeReady_ = false;
        if (--filterings == 0) return;
    }
    if (pendingAutoImport_ && camera->identity() == pendingAutoImport_ && isTrusted(*camera) &&
        camera->isIdentityFinal()) {
        autoImportDecided_ = true;
        // The summary of a run that has just ended is what shows last.
        const bool isSummed = status.starts_with(summaryStart) && (needsChoice() || needsServer());
        RC_ASSERT(
            (filterings > 1 || isSummed ||
             isAmong(status, {allPresent, notWritable, noRoom, unnamedServer, chooseFolderStatus,
                              anotherRuns, ImportModel::unlistedWaitStatus}) ||
             status.starts_with(cannotWrite)));
        if (model_->isPostponed()) postponed_ = true;
    }
    pendingAutoImport_.reset();
}

void ImportSequence::checkRun() const {
    const bool importing = phase_ == Phase::importing;
    RC_ASSERT(model_->phase() == phase_);
    RC_ASSERT(phase_ != Phase::done);
    RC_ASSERT(run_.has_value() == importing);
    RC_ASSERT(runner_->isRunning() == importing);
    RC_ASSERT(lock_->held == !model_->isSettled());
    if (importing) RC_ASSERT(!model_->isSettled());
    const auto staging = runner_->stagingDirectories();
    for (const auto& one : staging) RC_ASSERT(std::ranges::count(staging, one) == 1);
    RC_ASSERT(sleepBlocker_->reason == (importing ? Status("Bildkurier läuft") : Status()));
    RC_ASSERT(main_.repeating(speedInterval) == (importing ? 1 : 0));
    const auto waiting = waitingFiles(false);
    RC_ASSERT(waiting.size() <= (importing ? 1 : 0));
    RC_ASSERT(main_.repeating(watchInterval) <= (importing ? 1 : 0));
    const auto retries = main_.repeating(retryInterval) + main_.repeating(serverRetryInterval);
    RC_ASSERT(retries == (model_->isPostponed() ? 1 : 0));
    if (importing) RC_ASSERT(retries == 0);
    if (!importing) return;
    RC_ASSERT((run_->byUser || run_->announced));
    RC_ASSERT(model_->newFiles() == run_->files);
    const auto& progress = model_->progress();
    RC_ASSERT(progress.total == std::ssize(run_->files));
    // One file is told of before the next one is reported.
    RC_ASSERT((progress.done == run_->loaded || progress.done + 1 == run_->loaded));
    RC_ASSERT(progress.done + progress.failed <= progress.total);
    const double share = model_->totalBytesProgress();
    RC_ASSERT((share >= 0 && share <= 1));
    if (waiting.empty()) return;
    const auto& taken = held()->taken;
    RC_ASSERT(std::ranges::find(taken, waiting.front()) != taken.end());
}

void ImportSequence::checkCameras() const {
    RC_ASSERT(std::ranges::equal(model_->cameras(), attached_));
    const auto camera = held();
    for (const auto& other : attached_) RC_ASSERT((other == camera || other->closed));
    if (!selectionDiffers_) {
        RC_ASSERT(model_->selectedID() == (camera ? Status(camera->id()) : Status()));
    }
    if (!camera) RC_ASSERT(phase_ == Phase::noCamera);
}

void ImportSequence::checkCatalogue() const {
    std::int64_t bytes = 0;
    for (const auto& file : model_->newFiles()) bytes += file->size();
    RC_ASSERT(model_->newBytes() == bytes);
    const auto camera = held();
    if (!camera) {
        RC_ASSERT(model_->newFiles().empty());
        RC_ASSERT(model_->cameraFileCount() == 0);
    }
    if (model_->cameraFileCount() == 0) {
        RC_ASSERT(model_->cameraBytes() == 0);
        RC_ASSERT(model_->cameraDays().empty());
        if (phase_ == Phase::ready) RC_ASSERT(camera->read.empty());
        return;
    }
    std::int64_t cameraBytes = 0;
    std::set<Date> days;
    for (const auto& file : camera->read) {
        cameraBytes += file->size();
        if (file->shotDate()) days.insert(startOfLocalDay(*file->shotDate()));
    }
    RC_ASSERT(model_->cameraFileCount() == std::ssize(camera->read));
    RC_ASSERT(model_->cameraBytes() == cameraBytes);
    RC_ASSERT(std::ranges::equal(model_->cameraDays(), days));
    if (phase_ != Phase::ready) return;
    const auto fits = [this](const FileKeys& present) {
        const auto& files = model_->newFiles();
        return files == missing(filterDay(), present) ||
               ((refused_ || ungranted_ || trouble_ || (needsServer() && resumed_)) &&
                files == missing(std::nullopt, present));
    };
    if (needsServer()) return RC_ASSERT(fits({}));
    RC_ASSERT(
        (fits(scans_->keys) || (ungranted_ && fits({})) || (resumed_ && fits(presentToResume()))));
}

void ImportSequence::checkDay() const {
    const auto& days = model_->cameraDays();
    const auto day = model_->fromDaySelected();
    RC_ASSERT(day.has_value() == !days.empty());
    if (!day) return;
    const auto last = static_cast<double>(days.size() - 1);
    const double place = std::clamp(std::trunc(model_->fromDayIndex()), 0.0, last);
    RC_ASSERT(*day == days[static_cast<std::size_t>(place)]);
}

void ImportSequence::checkStatus() const {
    const std::string& status = model_->status();
    if (status == cancelling || status.starts_with("Auto-Import für ")) {
        RC_ASSERT((userSpoke_ || (run_ && status == run_->firstStatus)));
        return;
    }
    const auto camera = held();
    const bool lost = isAmong(status, {goesOn, gaveUp});
    // Told of a camera that was held already, when it could say who it is.
    const bool back = camera && canResume(*camera) && status.ends_with(returned);
    const bool finished = status.starts_with(summaryStart);
    switch (phase_) {
        case Phase::noCamera:
            RC_ASSERT((lost || isAmong(status, {searching, refusedSession})));
            break;
        case Phase::connecting:
            RC_ASSERT((lost || back || status == "Lese Kamera neu ein …" ||
                       status == fmt::format("Verbinde mit Kamera {} …", camera->id())));
            break;
        case Phase::reading:
            RC_ASSERT((back || status == "Lese Dateiliste der Karte(n) …"));
            break;
        case Phase::checking:
            RC_ASSERT((finished || back || isAmong(status, {"Prüfe Zielordner …", windingUp})));
            break;
        case Phase::ready:
            RC_ASSERT((isStatusOfReady(status) || (finished && (needsChoice() || needsServer()))));
            break;
        case Phase::importing: {
            const auto& progress = model_->progress();
            const std::string loading =
                fmt::format("Lade {} von {}: {}", progress.done + progress.failed + 1,
                            progress.total, progress.currentName);
            RC_ASSERT((status == loading || status == run_->firstStatus));
            break;
        }
        case Phase::done:
            RC_ASSERT(finished);
            break;
    }
}

bool ImportSequence::isStatusOfReady(const std::string& status) const {
    if (status == chooseFolderStatus) return ungranted_;
    if (status == anotherRuns) return refused_;
    if (model_->cameraFileCount() == 0) return status == "Die Kamera meldet keine Dateien.";
    if (isAmong(status, {allPresent, notWritable, noRoom, unnamedServer}))
        return autoImportDecided_;
    if (needsServer()) {
        return status == nameServerStatus || (resumed_ && status == nothingMissing);
    }
    if (model_->newFiles().empty()) {
        return isAmong(status, {"Nichts Neues im gewählten Zeitraum.", nothingMissing});
    }
    if (model_->destUnlisted()) {
        return status == ImportModel::unlistedStatus ||
               (model_->isPostponed() && status == ImportModel::unlistedWaitStatus);
    }
    if (status.starts_with(cannotWrite)) return true;
    const auto day = filterDay();
    const std::string start =
        fmt::format("{} neue Dateien ({}) bereit zum Import", model_->newFiles().size(),
                    formatBytes(model_->newBytes()));
    return status == (day ? start + " (ab " + displayDay().text(*day) + ")" : start + ".");
}

template <class Action>
void ImportSequence::checkNothingHappens(Action action) {
    const Shown before = shown();
    action();
    RC_ASSERT(shown() == before);
}

// What should be

bool ImportSequence::needsChoice() const { return model_->dest().isFile() && !access_->granted; }

bool ImportSequence::needsServer() const {
    return model_->dest().scheme == "sftp" && model_->dest().host.empty();
}

Url ImportSequence::formURL() const {
    return sftpURL(model_->sftpUser(), model_->sftpHost(), model_->sftpPath());
}

ImportSequence::Shown ImportSequence::shown() const {
    return {model_->phase(),    model_->status(),   model_->selectedID(), model_->cameras().size(),
            model_->newFiles(), model_->newBytes(), model_->progress(),   model_->log()};
}

std::shared_ptr<ScriptedCamera> ImportSequence::held() const {
    const auto found = std::ranges::find_if(
        attached_, [this](const auto& camera) { return camera->delegate.lock() == model_; });
    return found == attached_.end() ? nullptr : *found;
}

std::shared_ptr<ScriptedCamera> ImportSequence::waitingCamera() const {
    if (!settings_->storedAutoImport || !pendingAutoImport_) return nullptr;
    const auto found = std::ranges::find_if(attached_, [this](const auto& camera) {
        return camera->identity() == pendingAutoImport_ && camera != held();
    });
    return found == attached_.end() ? nullptr : *found;
}

bool ImportSequence::isTrusted(const ScriptedCamera& camera) const {
    return settings_->storedAutoImport && camera.identity() &&
           camera.identity() == settings_->storedIdentity;
}

bool ImportSequence::canResume(const ScriptedCamera& camera) const {
    return resumeReady_ && pendingResume_ && camera.isIdentityFinal() &&
           camera.isKnownAs(pendingResume_->identity);
}

std::optional<Date> ImportSequence::filterDay() const {
    return model_->useFromDate() ? model_->fromDaySelected() : std::nullopt;
}

CameraFiles ImportSequence::missing(std::optional<Date> since, const FileKeys& present) const {
    CameraFiles files(held()->read.begin(), held()->read.end());
    std::ranges::stable_sort(
        files, {}, [](const auto& file) { return file->shotDate().value_or(Date::min()); });
    FileKeys known = present;
    std::erase_if(files, [&](const auto& file) {
        const bool early = since && file->shotDate().value_or(Date::min()) < *since;
        return !file->name() || early || !known.insert(fileKey(*file->name(), file->size())).second;
    });
    return files;
}

/// The keys of all that the import that goes on need not load: it may have saved files under
/// other names.
FileKeys ImportSequence::presentToResume() const {
    FileKeys present = scans_->keys;
    if (lost_.empty() || lost_.back().run.dest != scans_->folder) return present;
    for (const auto& [key, savedKey] : lost_.back().run.renamed) {
        if (scans_->keys.contains(savedKey)) present.insert(key);
    }
    return present;
}

std::vector<std::shared_ptr<ScriptedFile>> ImportSequence::waitingFiles(bool unplugged) const {
    std::vector<std::shared_ptr<ScriptedFile>> waiting;
    for (const auto& camera : connections_) {
        std::ranges::copy_if(camera->taken, std::back_inserter(waiting), [=](const auto& file) {
            return file->isWaiting() && file->unplugged == unplugged;
        });
    }
    return waiting;
}

std::vector<std::string> ImportSequence::importedPaths(const std::string& folder) const {
    std::vector<std::string> paths;
    for (const auto& path : std::views::keys(store_->files)) {
        const bool hidden = path.find("/.") != std::string::npos;
        if (path.starts_with(folder + "/") && !hidden) paths.push_back(path);
    }
    return paths;
}

std::string ImportSequence::time() const { return logTime().text(loop_.date()); }

}  // namespace bildkurier
