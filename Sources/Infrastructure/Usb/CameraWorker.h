// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraConnection.h"
#include "CardCatalogue.h"
#include "Mailbox.h"
#include "PartialFile.h"
#include "UsbSession.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace bildkurier {

/// The thread that alone talks to one camera. It may hang with the camera, and so outlive all
/// else; then nobody hears from it any more. Main thread, unless it says otherwise.
class CameraWorker : public std::enable_shared_from_this<CameraWorker> {
public:
    /// Called on the main thread.
    struct Events {
        /// Once what the camera is has been found out, and when more of it has been.
        std::function<void(DeviceFacts)> identified;
        /// A camera that answered until now was unplugged.
        std::function<void()> lost;
    };
    struct SessionEvents {
        std::function<void(std::optional<Error>)> opened;
        std::function<void(std::size_t)> filesSeen;
        std::function<void(CardCatalogue)> listed;
        std::function<void(CardCatalogue)> changed;  ///< a new shot
    };

    CameraWorker(UsbPlace place, UsbBus bus, UsbTiming timing, CameraConnection::Release release,
                 std::shared_ptr<Mailbox> mailbox, Events events);

    /// Begins to identify the camera. Once.
    void start();

    void open(std::shared_ptr<UsbSession> session, SessionEvents events);
    void load(std::shared_ptr<UsbSession> session, std::shared_ptr<UsbLoad> load);
    /// The session has ended.
    void close(std::shared_ptr<UsbSession> session);
    /// No more work will come. The thread ends as soon as the camera lets it.
    void end();

    /// Waits until the thread has ended, until `deadline` for what the camera does and without
    /// limit for what the disk does.
    void waitUntilEnded(std::chrono::steady_clock::time_point deadline);

private:
    /// What is open; the thread's own.
    struct Opened {
        std::shared_ptr<UsbSession> session;
        SessionEvents events;
        CardListing listing;  ///< to which new shots are added
        int openings = 0;     ///< of the connection, when all of it was listed
        /// Questions for new shots that failed in a row.
        int failedQuestions = 0;
        /// Paths of files that were said to have come when they were listed already.
        std::set<std::string> toldTwice;
    };

    void run(Task task);
    void work();
    Task next();
    void identify();
    CameraFault readSerial();
    void insistOnSerial(const UsbSession& session);
    void tellFacts();
    void openSession(const std::shared_ptr<UsbSession>& session, SessionEvents events);
    bool listSession(Opened& opened);
    void loadFile(const std::shared_ptr<UsbSession>& session, const std::shared_ptr<UsbLoad>& load);
    Result<> wholeness(const UsbLoad& load);
    void deliver(UsbSession& session, const std::shared_ptr<UsbLoad>& load,
                 std::unique_ptr<PartialFile>& file, Result<> loaded);
    bool tellsOfNewShots() const;
    std::optional<GphotoCamera::NewFile> newShot(UsbTiming::Milliseconds patience);
    /// A media file or a sidecar; null where there is none.
    const CardEntry* listed(const std::string& folder, const std::string& name) const;
    std::optional<CardEntry> describe(const std::string& folder, const std::string& name);
    bool isToldTwice(const GphotoCamera::NewFile& file);
    bool addUntoldShots();
    bool hasTasks();
    bool takeNews(UsbTiming::Milliseconds patience);
    void askForNewShots();
    void tellOfChange();
    void reportLost();

    UsbPlace place_;
    UsbBus bus_;
    UsbTiming timing_;
    CameraConnection::Release release_;
    std::shared_ptr<Mailbox> mailbox_;
    Events events_;

    /// The thread's own, which makes it and destroys it.
    std::unique_ptr<CameraConnection> connection_;
    DeviceFacts facts_;               ///< the thread's own
    std::unique_ptr<Opened> opened_;  ///< the thread's own; null while closed

    std::mutex mutex_;  ///< guards what follows
    std::condition_variable changed_;
    std::deque<Task> tasks_;
    bool ending_ = false;
    bool delivering_ = false;  ///< completes a download
    bool ended_ = false;
};

}  // namespace bildkurier
