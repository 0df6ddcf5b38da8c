// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FailingFileStore.h"
#include "FakeFolderAccess.h"
#include "FakeFolderPicker.h"
#include "FakeRunLock.h"
#include "FakeSSHKeyring.h"
#include "FakeServer.h"
#include "FakeSleepBlocker.h"
#include "ImportModel.h"
#include "ImportStep.h"
#include "ManualRunLoop.h"
#include "MemoryFileStore.h"
#include "MemorySettings.h"
#include "ScanMemory.h"
#include "ScriptedCamera.h"
#include "SlowMoves.h"
#include "TimerCensus.h"

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace bildkurier {

/// A model to which things happen in any order. It keeps its own account of what is pending and
/// of the run, and asserts after every step, and at every change in between, that the model
/// shows nothing else. To be used in a RapidCheck property.
class ImportSequence {
public:
    struct Beginning {
        bool trusts = false;    ///< the first of three cameras
        bool onServer = false;  ///< is the destination
        bool isNamed = true;    ///< is that server
    };

    explicit ImportSequence(const Beginning& beginning);

    void happen(const ImportStep& step);
    /// All goes well from now on: what can be loaded must then be loaded, and once.
    void finish();
    /// The model goes; whatever still happens must have no effect.
    void leave();

private:
    using Phase = ImportModel::Phase;
    using Event = ImportStep::Event;
    using Status = std::optional<std::string>;

    /// A camera that exists, attached or not.
    struct Device {
        std::optional<std::string> identity;
        std::vector<Picture> card;
        std::shared_ptr<ScriptedCamera> attached;
        bool tellsLate = false;  ///< who it is, once it is attached
    };

    /// What a camera is to the model as soon as that hears who it is.
    struct Recognition {
        bool isAwaited = false;  ///< by an import that was interrupted
        bool resumes = false;    ///< awaited, and known for sure
        bool imports = false;    ///< by itself
        bool isTakenUp() const { return isAwaited || imports; }
    };

    /// The import that runs.
    struct Run {
        CameraFiles files;
        Url dest;
        FolderLayout layout;
        Instant began;
        std::int64_t bytes = 0;   ///< that progress told of, at most
        FileKeys present;         ///< at the destination, before it
        std::string firstStatus;  ///< shown until the first report
        bool byUser = false;
        bool announced = false;  ///< by a line of the log
        bool ignoresDateFilter = false;
        bool cancelled = false;
        int loaded = 0;
        /// Keys in the destination by those on the card, of what was saved under another name
        /// since the import began, its interruptions included.
        std::map<std::string, std::string> renamed;
    };

    /// A run that ended with its camera.
    struct LostRun {
        Run run;
        std::shared_ptr<ScriptedFile> file;  ///< delivered last
    };

    /// What the window shows.
    struct Shown {
        Phase phase;
        std::string status;
        std::optional<std::string> selectedID;
        std::size_t cameras;
        CameraFiles newFiles;
        std::int64_t newBytes;
        ImportRunner::Progress progress;
        std::deque<std::string> log;
        bool operator==(const Shown&) const = default;
    };

    void make();

    // What happens
    void plugIn(Device& device);
    void unplug(std::size_t which);
    void connect(Device& device);
    void replug();
    void identify(std::size_t which);
    void happenDuringMove(std::size_t which);
    void expectCamera(const Device& device);
    void noteRetry();
    void openSession(std::size_t which, const std::optional<Error>& error);
    void catalogReady(std::size_t which);
    void readCatalog(ScriptedCamera& camera);
    void cardChanges(Device& device, bool grows);
    void download(Event how, std::size_t which);
    void deliverAll();
    void answerLate(std::size_t which);
    void select(std::size_t which);
    void start();
    void cancel();
    void moveSlider(double index);
    void switchAutoImport(bool on);
    void chooseFolder(std::size_t which);
    void advance(Duration duration);
    void storeFails(std::size_t which);
    void removeFile(std::size_t which);
    void addFile(Device& device, std::size_t which);

    void fillForm(std::size_t which);
    void applyServer();
    void checkServer();
    void forgetServer();
    void switchKind();

    // What is seen while it happens
    void observed();
    void changed(Phase from, Phase to);
    void noteDestination();
    void measured();
    void logged(const std::string& line);
    void noteTrouble();
    bool hasArrivedLate(const LostRun& lost) const;
    void checkLoaded(const std::string& line);
    void checkResumed(const std::string& line);
    void checkAutoImport();

    // What holds afterwards
    void check();
    void checkRun() const;
    void checkCameras() const;
    void checkCatalogue() const;
    void checkDay() const;
    void checkStatus() const;
    void checkDestination() const;
    void checkServerState() const;
    bool isStatusOfReady(const std::string& status) const;
    void noteScans();
    void takeUpPending();
    void checkNothingIsDoubled() const;
    template <class Action>
    void checkNothingHappens(Action action);

    // What should be
    Shown shown() const;
    std::shared_ptr<ScriptedCamera> held() const;
    std::shared_ptr<ScriptedCamera> waitingCamera() const;
    bool needsChoice() const;
    bool needsServer() const;
    Url formURL() const;
    bool isTrusted(const ScriptedCamera& camera) const;
    Recognition recognised(const ScriptedCamera& camera);
    bool canResume(const ScriptedCamera& camera) const;
    std::optional<Date> filterDay() const;
    CameraFiles missing(std::optional<Date> since, const FileKeys& present) const;
    FileKeys presentToResume() const;
    std::vector<std::shared_ptr<ScriptedFile>> waitingFiles(bool unplugged) const;
    std::vector<std::string> importedPaths(const std::string& folder) const;
    std::string time() const;

    ManualRunLoop loop_;
    TimerCensus main_{loop_};
    std::shared_ptr<MemoryFileStore> store_ = std::make_shared<MemoryFileStore>();
    std::shared_ptr<FailingFileStore> failing_ = std::make_shared<FailingFileStore>(store_);
    std::shared_ptr<FakeSSHKeyring> keyring_ = std::make_shared<FakeSSHKeyring>();
    std::shared_ptr<FakeServer> server_ = std::make_shared<FakeServer>(failing_, keyring_);
    std::shared_ptr<SlowMoves> slow_ = std::make_shared<SlowMoves>(server_);
    std::shared_ptr<ScanMemory> scans_ = std::make_shared<ScanMemory>(slow_);
    std::shared_ptr<MemorySettings> settings_ = std::make_shared<MemorySettings>();
    std::shared_ptr<FakeFolderPicker> picker_ = std::make_shared<FakeFolderPicker>();
    std::shared_ptr<FakeSleepBlocker> sleepBlocker_ = std::make_shared<FakeSleepBlocker>();
    std::shared_ptr<FakeFolderAccess> access_ = std::make_shared<FakeFolderAccess>();
    std::shared_ptr<FakeRunLock> lock_ = std::make_shared<FakeRunLock>();
    std::shared_ptr<AutoImport> autoImport_;
    std::shared_ptr<ImportModel> model_;
    ImportRunner* runner_ = nullptr;  ///< the model's
    Handle observation_;

    std::array<Device, 3> devices_;
    std::vector<std::shared_ptr<ScriptedCamera>> attached_;     ///< in the order of plugging in
    std::vector<std::shared_ptr<ScriptedCamera>> connections_;  ///< every one there was
    int pictures_ = 0;                                          ///< taken so far

    // As seen last
    Phase phase_ = Phase::noCamera;
    std::string status_;
    std::size_t logSize_ = 0;
    const std::string* logBack_ = nullptr;
    SpeedMeter::Reading speed_;
    int notifications_ = 0;
    bool sawReturn_ = false;  ///< "… wieder verbunden …" was shown since the last plugging in

    // The account
    std::optional<Run> run_;
    std::vector<LostRun> lost_;
    std::shared_ptr<ScriptedFile> delivered_;  ///< last
    std::shared_ptr<ScriptedCamera> next_;     ///< to be selected after the run
    std::optional<ImportModel::Resume> pendingResume_;
    bool resumeReady_ = false;  ///< its camera is back
    int fruitless_ = 0;
    std::optional<std::string> pendingAutoImport_;
    std::optional<std::string> expectedTrust_;
    bool postponed_ = false;    ///< an automatic import that must wait
    std::vector<Url> applied_;  ///< servers that were to be checked
    Url seenDest_;
    Url serverDest_;  ///< the server that was the destination last
    bool switchesKind_ = false;
    bool userStarts_ = false;
    bool losesCamera_ = false;
    bool readsCatalog_ = false;
    bool selectionDiffers_ = false;   ///< another camera was chosen during a run
    bool userSpoke_ = false;          ///< and got an answer, in this phase
    bool autoImportDecided_ = false;  ///< by the latest comparison
    bool refused_ = false;            ///< a start, since the last scan
    bool resumed_ = false;            ///< an import was taken up, since the last scan
    bool ungranted_ = false;          ///< the folder, at some time since the last scan
    bool meddled_ = false;            ///< somebody else changed the destination
    Status trouble_;                  ///< of the list by which was decided what is missing
    bool toldTrouble_ = false;        ///< by a line of the log, since the scan began
    int scansSeen_ = 0;
    int filterings_ = 0;  ///< comparisons of files with the destination, since the last step
};

}  // namespace bildkurier
