// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraConnection.h"
#include "PartialFile.h"
#include "UsbSession.h"
#include "WriterThread.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace bildkurier {

/// Loads one file of an open camera. The camera's own thread.
class CameraLoader {
public:
    enum class Outcome : std::uint8_t {
        Loaded,  ///< all bytes are in the file, which is to be completed
        Failed,  ///< for good, for a reason
        Over,    ///< the camera is gone or the session has ended
    };

    CameraLoader(CameraConnection& connection, const UsbSession& session, const UsbLoad& load);

    /// Tries what fails again, with the camera opened anew, twice at most, and what it is too busy
    /// for a little later. Never takes a file for loaded that has not exactly the size that the
    /// camera announced, or of which it says that it is empty.
    Outcome load();

    /// Null until there is one.
    std::unique_ptr<PartialFile>& file() { return file_; }
    /// Why it failed.
    const Error& error() const { return error_; }

private:
    Outcome fail(Error error);
    Error reason(CameraFault fault) const;
    bool createFile();
    CameraFault transfer();
    int receive(WriterThread& writer);
    bool append(std::span<const char> bytes, WriterThread& writer);

    CameraConnection& connection_;
    const UsbSession& session_;
    const UsbLoad& load_;
    std::unique_ptr<PartialFile> file_;
    std::int64_t received_ = 0;
    std::optional<Error> ownError_;  ///< of this side of the transfer, which cancelled it
    Error error_;
    int answer_ = 0;
};

}  // namespace bildkurier
