// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraConnection.h"
#include "CardCatalogue.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// Lists all files of an open camera, on all its cards, of hidden ones and those of other kinds the
/// names alone. The camera's own thread.
class CameraLister {
public:
    /// What stands in a listing, at its top, when something of all cards may be missing.
    static constexpr auto wholeCard = "Speicherkarte";

    /// `isStopped` is asked before every question, `progress` hears how many files have been seen
    /// so far.
    CameraLister(CameraConnection& connection, std::function<bool()> isStopped,
                 std::function<void(std::size_t)> progress);
    CameraLister(const CameraLister&) = delete;
    CameraLister& operator=(const CameraLister&) = delete;
    ~CameraLister();

    /// What fails and is there still is tried again with the camera opened anew, twice at most
    /// for what is in a folder; one of which something may be missing stands in the listing
    /// itself, as unreadable. After three folders in a row for which there was no answer the camera
    /// is asked no more, and the others stand there likewise. Absent when the camera is gone or
    /// this was stopped.
    std::optional<CardListing> list();

    /// A file that came later, `folder` below the camera's root. Absent for what is not media or
    /// hidden, and when the camera is gone.
    std::optional<CardEntry> entry(const std::string& folder, const std::string& name);

private:
    enum class Answer : std::uint8_t { Good, Failed, Over };

    /// `call` answers with a code of the camera's.
    Answer ask(const std::function<int()>& call);
    Answer listFolder(const std::string& folder, int depth);
    Answer listInside(const std::string& folder, std::vector<std::string>& folders);
    Answer listFiles(const std::string& folder);
    void tell(std::size_t files);
    void addUnreadable(const std::string& unreadable);
    /// Something that is hidden or of another kind: the camera is asked no more about it.
    void addOther(const std::string& folder, const std::string& name);

    CameraConnection& connection_;
    std::function<bool()> isStopped_;
    std::function<void(std::size_t)> progress_;
    CardListing listing_;
    std::size_t listed_ = 0;  ///< in the folders so far
    std::size_t seen_ = 0;    ///< in the present one
    std::size_t told_ = 0;
    int reopenings_ = 0;     ///< for the present question
    std::size_t busy_ = 0;   ///< answers in a row that it is busy
    bool isSilent_ = false;  ///< the last answer was none
    int silentInARow_ = 0;   ///< folders that ended so
};

}  // namespace bildkurier
