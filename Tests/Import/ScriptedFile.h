// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraFile.h"
#include "MemoryFileStore.h"
#include "Picture.h"

#include <memory>
#include <optional>
#include <string>

namespace bildkurier {

/// A camera's file whose downloads wait until they are told how to go on.
class ScriptedFile final : public CameraFile {
public:
    ScriptedFile(std::shared_ptr<MemoryFileStore> store, Picture what);

    Picture picture;
    bool unplugged = false;  ///< downloads still answer, but nothing is written any more
    int downloads = 0;       ///< begun

    bool isWaiting() const { return done_ != nullptr; }
    /// Half of the file is there.
    void grow();
    /// The file is there, perhaps under another name than the one asked for.
    void deliver(const std::optional<std::string>& savedAs = std::nullopt);
    /// All but the last byte is there, but the camera is content.
    void truncate();
    void fail();

    std::optional<std::string> name() const override { return picture.name; }
    std::int64_t size() const override { return picture.size; }
    std::optional<Date> shotDate() const override { return picture.shot; }
    void download(const Url& folder, const std::string& saveAs, DownloadCompletion done) override;

private:
    void write(const std::string& as, std::size_t bytes);
    void answer(Result<std::optional<std::string>> result);

    std::shared_ptr<MemoryFileStore> store_;
    Url folder_;
    std::string saveAs_;
    DownloadCompletion done_;
};

}  // namespace bildkurier
