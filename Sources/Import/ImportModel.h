// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "AutoImport.h"
#include "Background.h"
#include "CameraBrowser.h"
#include "CameraBrowserDelegate.h"
#include "CameraDelegate.h"
#include "DestinationKind.h"
#include "FileStore.h"
#include "FolderAccess.h"
#include "FolderPicker.h"
#include "Guard.h"
#include "IdleSleepBlocker.h"
#include "ImportCandidate.h"
#include "ImportPlanner.h"
#include "ImportRunner.h"
#include "ImportSelection.h"
#include "MainQueue.h"
#include "Observers.h"
#include "RunLock.h"
#include "SSHKeyring.h"
#include "SettingsStore.h"
#include "SpeedMeter.h"
#include "TypeSummary.h"
#include "Workspace.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace bildkurier {

/// Everything a front end shows and does: cameras come and go, one is opened and read, the
/// destination is compared with it, imports run, are interrupted and go on. Fields change on
/// the main thread only; observers hear of each change.
class ImportModel final : public CameraBrowserDelegate,
                          public CameraDelegate,
                          public std::enable_shared_from_this<ImportModel> {
public:
    enum class Phase : std::uint8_t {
        noCamera,
        connecting,
        reading,
        checking,
        ready,
        importing,
        done
    };

    /// What to take up again when a camera that was lost during an import returns.
    struct Resume {
        std::string identity;
        bool ignoresDateFilter = false;
        bool isBack = false;  ///< the camera has been connected again

        bool operator==(const Resume&) const = default;
    };

    struct Collaborators {
        std::shared_ptr<CameraBrowser> browser;
        std::shared_ptr<FileStore> fileStore;
        std::shared_ptr<SettingsStore> settings;
        std::shared_ptr<FolderPicker> folderPicker;  ///< none: nothing can be chosen
        std::unique_ptr<ImportRunner> runner;
        std::shared_ptr<AutoImport> autoImport;
        std::shared_ptr<IdleSleepBlocker> sleepBlocker;
        std::shared_ptr<FolderAccess> folderAccess;
        std::shared_ptr<RunLock> runLock;
        std::shared_ptr<SSHKeyring> keyring;   ///< without it, nothing about servers' keys
        std::shared_ptr<Workspace> workspace;  ///< none: nothing can be shown
        std::string homeFolder;                ///< path; what "~" stands for
    };

    static constexpr auto searchingStatus = "Suche Kamera … (einschalten und per USB verbinden)";
    static constexpr auto chooseFolderStatus =
        "Zielordner wählen: unter Ziel auf „Ändern …“ klicken.";
    static constexpr auto nothingNewStatus = "Nichts Neues im gewählten Zeitraum.";
    /// Before the reason why the trusted camera is not imported.
    static constexpr auto suspendedStatus = "Auto-Import ausgesetzt: ";
    static constexpr auto overlapStatus =
        "Karte und Zielordner liegen ineinander; bitte einen anderen Zielordner wählen.";
    /// While files would be counted as missing that are there, maybe.
    static constexpr auto unlistedStatus =
        "Der Zielordner ließ sich nicht vollständig auflisten: Was dort fehlt, ist nicht bekannt. "
        "Bitte noch einmal einlesen.";
    /// The same while an automatic import waits for that.
    static constexpr auto unlistedWaitStatus =
        "Der Zielordner ließ sich nicht vollständig auflisten. Der Import beginnt von selbst, "
        "sobald das gelingt.";
    static constexpr auto unwritableStatus = "Zielordner fehlt oder ist nicht beschreibbar.";
    static constexpr auto nameServerStatus =
        "Server angeben: unter Ziel den Rechner eintragen, dann „Verbinden und prüfen“.";

    /// Restores what the settings hold. `main` must outlive the model, and `background` end
    /// before `main`. Discovery is begun by starting the browser with the model as delegate.
    ImportModel(Collaborators collaborators, MainQueue& main, Background& background);

    /// Calls `changed` whenever a field below has changed, until the handle is dropped.
    [[nodiscard]] Handle observe(std::function<void()> changed);

    /// Called with each line as it is added to the log.
    std::function<void(const std::string&)> onLog = [](const std::string&) {};

    const std::vector<std::shared_ptr<Camera>>& cameras() const { return cameras_; }
    /// The one whose session is held; null without one.
    const std::shared_ptr<Camera>& camera() const { return camera_; }
    const std::optional<std::string>& selectedID() const { return selectedID_; }
    const Url& dest() const { return dest_; }
    DestinationKind destinationKind() const { return destinationKind_; }
    const std::string& sftpUser() const { return sftpUser_; }
    const std::string& sftpHost() const { return sftpHost_; }
    const std::string& sftpPath() const { return sftpPath_; }
    /// What came of the last check of a server.
    const std::optional<std::string>& sftpStatus() const { return sftpStatus_; }
    bool sftpConnected() const { return sftpConnected_; }
    bool sftpChecking() const { return sftpChecking_; }
    /// Of the server's key as it was known after that check.
    const std::optional<std::string>& sftpHostFingerprint() const { return sftpHostFingerprint_; }
    /// Whether it was that check which met the server's key for the first time.
    bool sftpHostIsNew() const { return sftpHostIsNew_; }
    /// Whether the server showed another key than before.
    bool sftpHostKeyMismatch() const { return sftpHostKeyMismatch_; }
    bool byDate() const { return byDate_; }
    bool byType() const { return byType_; }
    /// The first moments of the days on which the card's files were shot, ascending.
    const std::vector<Date>& cameraDays() const { return cameraDays_; }
    bool useFromDate() const { return useFromDate_; }
    double fromDayIndex() const { return fromDayIndex_; }
    bool autoImportEnabled() const { return autoImportEnabled_; }
    /// Of the camera that is imported automatically.
    std::string trustedName() const { return autoImport_->trustedName(); }
    /// Whether there is a camera that will be imported whenever it is connected.
    bool trustsCamera() const { return autoImport_->trustsCamera(); }
    Phase phase() const { return phase_; }
    const std::string& status() const { return status_; }
    std::int64_t cameraFileCount() const { return cameraFileCount_; }
    std::int64_t cameraBytes() const { return cameraBytes_; }
    /// What an import would load, in catalogue order.
    const CameraFiles& newFiles() const { return newFiles_; }
    std::int64_t newBytes() const { return newBytes_; }
    const ImportRunner::Progress& progress() const { return progress_; }
    /// Of the run, every file counted whose line is in the log.
    const ImportRunner::Progress& latestProgress() const { return runner_->progress(); }
    /// Positions, ascending, of those `newFiles` with which the last run began that have failed.
    const std::vector<std::size_t>& failedFiles() const { return runner_->failedFiles(); }
    const SpeedMeter::Reading& speed() const { return speed_; }
    bool destOnNetwork() const { return destOnNetwork_; }
    /// Oldest first, at most 500 lines.
    const std::deque<std::string>& log() const { return log_; }

    /// Tiles for `newFiles`.
    const std::vector<TypeSummary>& newByType() const { return newByType_; }
    /// The first day to import when the filter is on; absent without dated files.
    std::optional<Date> fromDaySelected() const;
    /// Whether the user must choose the destination folder again before it can be used.
    bool destNeedsChoice() const;
    /// Whether the card lies in the destination or the other way round, as last found.
    bool destOverlaps() const { return destOverlaps_; }
    /// Whether there may be more at the destination than was listed last: some of `newFiles` may
    /// be there.
    bool destUnlisted() const { return destTrouble_.has_value(); }
    /// Whether the destination is on a server that has not been named.
    bool destNeedsServer() const { return destIsSFTP() && dest_.host.empty(); }
    bool destIsSFTP() const { return dest_.scheme == "sftp"; }
    /// For human eyes.
    std::string destDescription() const;
    /// 0 to 1.
    double totalBytesProgress() const;
    /// Whether an interrupted import goes on as soon as its camera returns.
    bool awaitsCamera() const { return pendingResume_.has_value(); }
    /// Whether an automatic import waits for another process or for the destination.
    bool isPostponed() const { return static_cast<bool>(pendingRetry_); }
    /// Why nothing may be loaded to the destination; null when it may.
    const char* objectionToDestination() const;
    /// Whether nothing of a run touches the destination any more.
    bool isSettled() const { return runner_->isSettled(); }
    /// Where runs stage that have not come to rest: to be cleared should the model go before.
    std::vector<Url> stagingDirectories() const { return runner_->stagingDirectories(); }

    void setSelectedID(std::optional<std::string> id);
    void setDest(const Url& dest);
    /// Goes on with the stored folder or server of that kind.
    void setDestinationKind(DestinationKind kind);
    /// What stands in the form; without effect until `applySFTPDestination`.
    void setSftpUser(std::string user);
    void setSftpHost(std::string host);  ///< may end in ":port"
    void setSftpPath(std::string path);
    void setByDate(bool byDate);
    void setByType(bool byType);
    void setUseFromDate(bool useFromDate);
    /// A slider's value; only its whole part counts.
    void setFromDayIndex(double index);
    void setAutoImportEnabled(bool enabled);
    /// Trusts the camera of that name or identity from the moment in which it is connected.
    void trustWhenConnected(std::string nameOrIdentity);

    /// Reads camera and destination again.
    void reload();
    void chooseDest();
    /// Without effect unless the destination is a folder that may be used.
    void showDestInFinder();
    /// Connects to the server in the form, and makes it the destination if all is well.
    void applySFTPDestination();
    /// Of the server in the form. Blocks shortly.
    void forgetSFTPHostKey();
    /// Without effect unless files are ready to be imported.
    void startImport(bool ignoringDateFilter = false, bool continuingPreviousRun = false);
    /// Ends the run after the file in flight.
    void cancelImport();
    void addLog(std::string line);

    void cameraBrowserDidAdd(const std::shared_ptr<Camera>& camera) override;
    void cameraBrowserDidIdentify(const std::shared_ptr<Camera>& camera) override;
    void cameraBrowserDidRemove(const std::shared_ptr<Camera>& camera) override;
    void cameraDidOpenSession(Camera& camera, const std::optional<Error>& error) override;
    void cameraCatalogGrows(Camera& camera, std::size_t filesSoFar) override;
    void cameraCatalogReady(Camera& camera) override;
    void cameraCatalogChanged(Camera& camera) override;

    /// Seconds; what the speed is measured by.
    std::function<double()> clock;

private:
    struct DestinationScan;
    struct SFTPCheck;

    /// Of files that were saved under other names than the camera's: the keys that they have in
    /// the destination, by the keys that they have on the camera.
    using SavedKeys = std::map<std::string, std::string>;

    /// Files of one import, from its start over all its interruptions.
    struct RenamedFiles {
        Url destination;
        SavedKeys savedKeys;
    };

    template <class T>
    void publish(T& field, std::type_identity_t<T> value);
    bool isReadyOrDone() const { return phase_ == Phase::ready || phase_ == Phase::done; }
    bool holds(const Camera& camera) const { return camera_.get() == &camera; }
    Url settingsDestination(DestinationKind kind) const;
    std::string timeStamp() const;
    void sftpChecked(const SFTPCheck& check);

    /// Also when the camera of that name was chosen already, but has not been opened.
    void select(std::optional<std::string> id);
    void selectCamera();
    void setCatalog(CameraFiles files);
    void loadCatalog();
    void setCameraDays();
    void recompute();
    /// Scans the destination once no abandoned run can bring a file there any more.
    void scanAtRest();
    void scanDestination();
    SavedKeys savedKeysToResume() const;
    void destinationScanned(DestinationScan scan);
    void applyFilter();
    /// Whether that is another day than before.
    bool chooseFromDay(double index);
    ImportSelection missingFilesSince(std::optional<Date> since) const;
    void showMissing(ImportSelection missing);

    /// Everything that lasts exactly as long as a run.
    void endRun();
    /// Unless something of the run still touches the destination.
    void releaseLock();
    void runSettled(const std::optional<std::string>& arrived);
    void fileRenamed(const ImportRunner::RenamedFile& file);
    void showProgress(const ImportRunner::Progress& progress);
    void importFinished(const ImportRunner::Progress& progress, bool cancelled);
    void startSpeedMeter();
    void sampleSpeed();

    /// Whether an import waits for this camera.
    bool recognise(const std::shared_ptr<Camera>& camera);
    /// Reads the camera and the destination, unless that is under way.
    void takeUp(const Camera& camera);
    /// What to tell, if anything.
    std::optional<std::string> noteInterruptedImport(const Camera& camera);
    /// Whether an interrupted import waits for this camera, as far as is known who it is.
    bool isAwaited(const Camera& camera) const;
    /// Whether the camera held is the one that was lost, and is back.
    bool canResume() const;
    /// Whether the folder in which the import has begun is gone, or cannot be written to any more.
    bool hasLostFolder() const;
    void resumeInterruptedImport();
    void startPendingAutoImport();
    void suspendAutoImport(const std::string& reason);
    /// Until no other process imports any more and the destination can be listed and written to.
    void postpone(const std::string& what, const std::string& reason);
    void retry();
    void trust(const Camera& camera);

    MainQueue& main_;
    Background& background_;
    std::shared_ptr<CameraBrowser> browser_;
    std::shared_ptr<FileStore> fileStore_;
    std::shared_ptr<SettingsStore> settings_;
    std::shared_ptr<FolderPicker> folderPicker_;
    std::unique_ptr<ImportRunner> runner_;
    std::shared_ptr<AutoImport> autoImport_;
    std::shared_ptr<IdleSleepBlocker> sleepBlocker_;
    std::shared_ptr<FolderAccess> folderAccess_;
    std::shared_ptr<RunLock> runLock_;
    std::shared_ptr<SSHKeyring> keyring_;
    std::shared_ptr<Workspace> workspace_;
    std::string homeFolder_;

    std::vector<std::shared_ptr<Camera>> cameras_;
    std::optional<std::string> selectedID_;
    Url dest_;
    DestinationKind destinationKind_ = DestinationKind::folder;
    std::string sftpUser_;
    std::string sftpHost_;
    std::string sftpPath_;
    std::optional<std::string> sftpStatus_;
    bool sftpConnected_ = false;
    bool sftpChecking_ = false;
    std::optional<std::string> sftpHostFingerprint_;
    bool sftpHostIsNew_ = false;
    bool sftpHostKeyMismatch_ = false;
    bool byDate_ = false;
    bool byType_ = true;
    std::vector<Date> cameraDays_;
    bool useFromDate_ = false;
    double fromDayIndex_ = 0;
    bool autoImportEnabled_ = false;
    Phase phase_ = Phase::noCamera;
    std::string status_ = searchingStatus;
    std::int64_t cameraFileCount_ = 0;
    std::int64_t cameraBytes_ = 0;
    CameraFiles newFiles_;
    std::vector<TypeSummary> newByType_;
    std::int64_t newBytes_ = 0;
    ImportRunner::Progress progress_;
    SpeedMeter::Reading speed_;
    bool destOnNetwork_ = false;
    std::deque<std::string> log_;
    Observers observers_;

    std::shared_ptr<Camera> camera_;  ///< whose session is held
    CameraFiles allFiles_;            ///< its catalogue, by shot date
    std::shared_ptr<const std::vector<ImportCandidate>> candidates_ =
        std::make_shared<std::vector<ImportCandidate>>();  ///< of `allFiles_`
    ImportPlanner planner_;  ///< of these and what the destination has; of none while unknown
    /// The same for an import that goes on, if it has saved files under other names.
    std::optional<ImportPlanner> resumePlanner_;
    RenamedFiles renamed_;    ///< of the last import
    Guard scanGeneration_;    ///< renewed by each scan and camera, so that older scans are dropped
    bool scanWaits_ = false;  ///< for an abandoned run to come to rest
    bool destWritable_ = false;
    bool destOverlaps_ = false;
    std::optional<std::string> destTrouble_;  ///< why more may be there than was listed
    std::optional<std::int64_t> destCapacity_;
    Guard sftpChecks_;      ///< never renewed: of several checks, each shows what came of it
    Handle pendingReload_;  ///< a catalogue re-read is scheduled
    bool changedMeanwhile_ = false;  ///< the catalogue, while it could not be read again
    Handle pendingReopen_;           ///< a session is to be opened again
    std::optional<Resume> pendingResume_;
    int fruitlessResumes_ = 0;
    bool runIgnoresDateFilter_ = false;
    Handle pendingRetry_;                       ///< looks whether what an import waits for is over
    std::optional<std::string> expectedTrust_;  ///< name or identity of a camera to trust
    SpeedMeter speedMeter_;
    std::int64_t sampledBytes_ = 0;  ///< at most, since the run began
    Handle speedTimer_;
};

}  // namespace bildkurier
