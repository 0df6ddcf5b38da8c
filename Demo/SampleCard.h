// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <chrono>
#include <filesystem>
#include <string>

namespace bildkurier {

/// A memory card as a camera leaves it after a few summer days: pictures with their capture
/// dates, sidecars, films, sound, and the files that a camera and a computer put beside them.
/// Always the same bytes.
class SampleCard {
public:
    /// Writes the card into the folder `root`, which is made if need be.
    explicit SampleCard(std::filesystem::path root) : root_(std::move(root)) {}
    void write() const;

private:
    using Moment = std::chrono::local_seconds;

    void writePictures() const;
    void writeFilms() const;
    void writeSounds() const;
    void writeLeftovers() const;

    void add(const std::filesystem::path& name, Moment captured, const std::string& bytes) const;

    std::filesystem::path root_;
};

}  // namespace bildkurier
