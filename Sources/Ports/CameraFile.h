// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"
#include "ImportCandidate.h"
#include "PlacedFile.h"
#include "Result.h"
#include "Url.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace bildkurier {

/// The name under which a download was written (absent: the name asked for), or why not.
using DownloadCompletion = std::function<void(Result<std::optional<std::string>>)>;

/// One file in a camera's catalogue. Main thread.
class CameraFile {
public:
    virtual ~CameraFile() = default;

    /// As the camera reports it, with extension: untrusted text. Absent when it reports none.
    virtual std::optional<std::string> name() const = 0;

    /// Bytes, as the camera's catalogue says.
    virtual std::int64_t size() const = 0;

    /// When it was taken, else when the camera's file system says it was made.
    virtual std::optional<Date> shotDate() const = 0;

    /// Why it cannot be loaded, where that is known beforehand. A folder that could not be read
    /// stands in the catalogue like this.
    virtual std::optional<Error> obstacle() const { return std::nullopt; }

    /// Where it can be read on this computer without a download, if it can.
    virtual std::optional<PlacedFile> place() const { return std::nullopt; }

    /// All of this at once, as the planner sees it.
    virtual ImportCandidate candidate() const {
        return {name(), size(), shotDate(), obstacle().has_value()};
    }

    /// Copies the file as `name` into the local folder `folder`, over a file of that name if
    /// there is one. The partial file stands there under its name and grows. `done` is called
    /// exactly once, on any thread, also when this object is let go of meanwhile; not any more
    /// once the background has ended.
    virtual void download(const Url& folder, const std::string& name, DownloadCompletion done) = 0;
};

}  // namespace bildkurier
