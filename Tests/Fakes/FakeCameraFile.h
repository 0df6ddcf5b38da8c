// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraFile.h"
#include "MemoryFileStore.h"

#include <memory>
#include <optional>
#include <string>

namespace bildkurier {

/// A camera file that downloads into a file store in memory, as the test says.
class FakeCameraFile final : public CameraFile {
public:
    FakeCameraFile(std::shared_ptr<MemoryFileStore> store, std::optional<std::string> fileName,
                   std::string fileContents);

    std::optional<std::string> cameraName;
    std::string contents;
    std::int64_t cameraSize;  ///< that of `contents` at first
    std::optional<Date> shot;

    std::optional<Error> error;  ///< what a download fails with
    std::optional<Error> knownObstacle;
    std::optional<PlacedFile> knownPlace;
    std::optional<std::string> savedAs;  ///< another name than the one asked for
    bool holdsBack = false;              ///< downloads wait for `deliver`

    int downloads = 0;  ///< begun
    Url staged;         ///< where the latest one was asked to go

    /// Makes the partial file of the download in flight `bytes` long.
    void grow(std::size_t bytes);
    /// Completes the download in flight, or completes one again.
    void deliver();

    std::optional<std::string> name() const override { return cameraName; }
    std::int64_t size() const override { return cameraSize; }
    std::optional<Date> shotDate() const override { return shot; }
    std::optional<Error> obstacle() const override { return knownObstacle; }
    std::optional<PlacedFile> place() const override { return knownPlace; }
    void download(const Url& to, const std::string& saveAs, DownloadCompletion done) override;

private:
    std::shared_ptr<MemoryFileStore> store_;
    DownloadCompletion done_;
};

}  // namespace bildkurier
