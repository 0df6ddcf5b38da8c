// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "Camera.h"
#include "ContentReader.h"
#include "FileStore.h"
#include "Guard.h"
#include "ImportRunner.h"
#include "ImportSelection.h"
#include "MainQueue.h"
#include "ProofGroups.h"
#include "RunLock.h"
#include "SSHKeyring.h"
#include "SpeedMeter.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// Proves that files of a card are at a destination, by name and size or byte for byte. It reads
/// the destination afresh, and writes neither there nor on the card: what cannot be read in its
/// place is copied to a folder of its own first. No import runs meanwhile. Main thread.
class CardProof {
public:
    /// What was found of one file that is not proved to be there.
    struct Finding {
        std::string name;  ///< as the camera reports it: untrusted; empty when it reports none
        std::int64_t size = 0;
        Proof proof;

        bool operator==(const Finding&) const = default;
    };

    struct Outcome {
        std::int64_t files = 0;    ///< of the card
        std::int64_t bytes = 0;    ///< their sizes
        std::int64_t present = 0;  ///< of these, proved to be there
        std::int64_t missing = 0;
        std::int64_t twins = 0;
        std::int64_t unproved = 0;  ///< of which nothing could be found out
        bool content = false;       ///< whether contents were compared
        bool isWholeCard = true;    ///< not only what was loaded just now
        bool hasCardChanged = false;
        OtherFiles others;  ///< what nobody has looked at

        /// Never of no file at all: an empty card may be one that cannot be read.
        bool isComplete() const {
            return files > 0 && present == files && unproved == 0 && !hasCardChanged;
        }
        bool operator==(const Outcome&) const = default;
    };

    struct Collaborators {
        std::shared_ptr<ContentReader> reader;
        std::shared_ptr<FileStore> fileStore;
        std::shared_ptr<SSHKeyring> keyring;  ///< without it, nothing about servers' keys
        std::shared_ptr<RunLock> runLock;
        Url staging;  ///< a folder of this computer that is this object's alone
    };

    struct Task {
        CameraFiles files;
        Camera::OverlapTest overlaps;
        /// Whether these are all the files of the card still.
        Camera::SameFilesTest hasSameFiles = [] { return true; };
        Url destination;
        bool content = false;
        bool isWholeCard = true;
        OtherFiles others;  ///< on the card besides
    };

    static constexpr Duration reportInterval{0.25};

    /// `main` must outlive this, and `background` end before `main`.
    CardProof(Collaborators collaborators, MainQueue& main, Background& background);
    CardProof(const CardProof&) = delete;
    CardProof& operator=(const CardProof&) = delete;
    /// Has work under way stop soon.
    ~CardProof();

    /// The destination is a server that was never met before, with a key of this fingerprint.
    std::function<void(const std::string&)> onNewServer = [](const std::string&) {};
    /// Why what is at the destination may be less safe than it seems: a finished sentence. Of a
    /// whole card only.
    std::function<void(const std::string&)> onCaution = [](const std::string&) {};
    /// A folder of the destination, in which anything may be: its path there, untrusted.
    std::function<void(const std::string&)> onUnreadable = [](const std::string&) {};
    /// Contents are about to be compared.
    std::function<void(const Outcome&)> onComparing = [](const Outcome&) {};
    std::function<void(const ImportRunner::Progress&, const SpeedMeter::Reading&)> onProgress =
        [](const ImportRunner::Progress&, const SpeedMeter::Reading&) {};
    std::function<void(const Finding&)> onFinding = [](const Finding&) {};
    /// What it came to, or why the destination cannot be read: a finished sentence. Once for
    /// each start, unless that was cancelled.
    std::function<void(const Result<Outcome>&)> onFinish = [](const Result<Outcome>&) {};

    /// None may be under way.
    void start(Task task);
    /// Stops without finishing; work under way ends soon.
    void cancel();

    bool isRunning() const { return isRunning_; }
    /// Where copies are made, if any may be left: to be cleared once the background has ended.
    std::optional<Url> stagingToClear() const;

private:
    struct Plan;
    struct Batch;

    void planned(Result<Plan> plan);
    void takeNext();
    void add(Batch& batch, ProofGroup group) const;
    /// How many bytes copies of all that belongs to the group may take.
    std::int64_t roomFor(const ProofGroup& group) const;
    /// How many bytes are left for copies beside those of batches under way.
    std::int64_t roomLeft() const;
    /// Tells that copies of the group do not fit into the `free` bytes.
    void giveUp(const ProofGroup& group, std::int64_t free);
    void load(const std::shared_ptr<Batch>& batch);
    void compare(const std::shared_ptr<Batch>& batch);
    /// The bytes of the card's files in `batch`, by how much of the work is done.
    std::int64_t bytesDone(Batch& batch) const;
    void tell(const ProofGroup& group, const std::vector<Proof>& proofs);
    void tell(std::size_t position, const Proof& proof);
    void report();
    /// Whether all of the card has been looked at is known only now.
    void lookAgain();
    void finish(const Result<Outcome>& outcome);

    std::shared_ptr<ContentReader> reader_;
    std::shared_ptr<FileStore> fileStore_;
    std::shared_ptr<SSHKeyring> keyring_;
    std::shared_ptr<RunLock> runLock_;
    Url staging_;
    MainQueue& main_;
    Background& background_;

    bool isRunning_ = false;
    bool mayHaveStaged_ = false;
    Task task_;
    std::shared_ptr<const std::vector<ContentReader::File>> destination_;
    std::deque<ProofGroup> waiting_;
    std::vector<std::shared_ptr<Batch>> underWay_;
    std::size_t batches_ = 0;
    bool isLoading_ = false;  ///< from the card
    std::shared_ptr<std::atomic<bool>> isCancelled_;
    Outcome outcome_;
    ImportRunner::Progress progress_;
    SpeedMeter speedMeter_;
    Handle reports_;
    Guard run_;
};

}  // namespace bildkurier
