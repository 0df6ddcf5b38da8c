// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraFile.h"

#include <fstream>
#include <ios>
#include <string>
#include <utility>

namespace bildkurier {

/// A camera file whose download is written to this computer's disk at once.
class PictureOnCard final : public CameraFile {
public:
    PictureOnCard(std::string name, std::string contents)
        : name_(std::move(name)), contents_(std::move(contents)) {}

    std::optional<std::string> name() const override { return name_; }
    std::int64_t size() const override { return std::ssize(contents_); }
    std::optional<Date> shotDate() const override { return {}; }
    void download(const Url& folder, const std::string& name, DownloadCompletion done) override {
        std::ofstream stream(folder.appending(name).path, std::ios::binary);
        stream.exceptions(std::ios::badbit | std::ios::failbit);
        stream << contents_ << std::flush;
        done(std::optional(name));
    }

private:
    std::string name_;
    std::string contents_;
};

}  // namespace bildkurier
