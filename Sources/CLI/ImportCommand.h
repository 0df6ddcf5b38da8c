// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "Camera.h"
#include "CardProof.h"
#include "CommandLine.h"
#include "FileKey.h"
#include "FolderAccess.h"
#include "ModelCommand.h"
#include "RunLock.h"
#include "SSHKeyring.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace bildkurier {

/// `cameras`, `plan` and `import`: lists the cameras, or plans and imports those that are meant,
/// one after the other: what is wrong with one does not keep the next. An import whose camera is
/// lost goes on when it returns. `background` must end before the main queue does.
class ImportCommand final : public ModelCommand {
public:
    ImportCommand(CommandLine commandLine, std::shared_ptr<ImportModel> model,
                  std::shared_ptr<CardProof> proof, std::shared_ptr<FolderAccess> folderAccess,
                  std::shared_ptr<FileStore> fileStore, std::shared_ptr<SSHKeyring> keyring,
                  std::shared_ptr<RunLock> runLock, MainQueue& main, Background& background,
                  Report& report, Done done);

private:
    enum class Stage : std::uint8_t {
        beginning,
        reading,   ///< a camera is being opened and read
        running,   ///< its import
        proving,   ///< that what was loaded is there
        returning  ///< its import was interrupted; it has to come back
    };

    struct PlannedFile {
        std::string key;
        std::int64_t bytes = 0;
    };

    struct Vanished {
        std::int64_t files = 0;
        std::int64_t bytes = 0;
    };

    void start() override;
    void look() override;
    bool isUnderWay() const override;
    void reachServer();
    void lookForFolder(const Url& destination);
    void nextCamera();
    /// Leaves this camera for the next one; ends the command where there is none.
    void passOver(ExitStatus status, const std::string& message);
    void lookWhileReading();
    void lookWhileRunning();
    void lookWhileProving();
    void lookForReturn();
    /// The camera has to be back and read before its import can go on.
    void lookWhileAwaiting();
    /// The import goes on.
    void goOn();
    void takeReturned();
    /// The camera is back, but nothing of its import is left to load.
    void endAfterReturn();
    /// Chooses the first day that the user wants; false when nothing was shot since then.
    bool chooseDay();
    Report::Plan chosenPlan();
    void startImport();
    /// Tells of the folders that cannot be read and are left out for their date, though pictures
    /// since the day may be in there. They count as failed.
    ImportRunner::Progress tellOfUnreadable();
    /// Remembers what the import is to load.
    void noteFiles();
    /// Remembers how far the import came that was interrupted.
    void noteLoss();
    /// Tells how many files are not on the card that has returned, though they were never loaded.
    /// Those that had failed before are not among the ones it answers.
    Vanished tellOfVanished();
    /// The import is over, and summed up.
    void finished(const ImportRunner::Progress& progress);
    void prove();
    void leaveUnproved();
    void proved(const Result<CardProof::Outcome>& outcome);
    bool isAttached() const;

    CommandLine commandLine_;
    std::shared_ptr<CardProof> proof_;
    std::shared_ptr<FolderAccess> folderAccess_;
    std::shared_ptr<FileStore> fileStore_;
    std::shared_ptr<SSHKeyring> keyring_;
    std::shared_ptr<RunLock> runLock_;
    MainQueue& main_;
    Background& background_;
    std::deque<std::shared_ptr<Camera>> waiting_;
    std::shared_ptr<Camera> camera_;
    Stage stage_ = Stage::beginning;
    Report::Plan plan_;                      ///< that was told last, as of the import that runs
    std::vector<PlannedFile> files_;         ///< the same, in the order in which they are loaded
    ImportRunner::Progress lost_;            ///< of the import that was interrupted
    std::vector<PlannedFile> lostFailures_;  ///< those that had failed in it
    FileKeys toProve_;  ///< of the files that were to be loaded from this camera
    bool severalCameras_ = false;
    Guard answers_;
};

}  // namespace bildkurier
