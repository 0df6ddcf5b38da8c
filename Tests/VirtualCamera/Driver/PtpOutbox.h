// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "PtpPacket.h"

#include <cstdint>
#include <deque>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace bildkurier {

/// What a virtual camera has to say, until the computer reads it.
class PtpOutbox {
public:
    PtpOutbox() = default;
    PtpOutbox(const PtpOutbox&) = delete;
    PtpOutbox& operator=(const PtpOutbox&) = delete;
    ~PtpOutbox() { clear(); }

    void add(const PtpPacket& packet);
    /// The same, followed by a part of a file.
    void add(const PtpPacket& packet, const std::filesystem::path& file, std::uint64_t offset,
             std::uint64_t count);
    void clear();

    bool isEmpty() const { return segments_.empty(); }
    /// Answers how many bytes of what was added in one piece it gave.
    std::size_t read(std::span<char> bytes);

private:
    struct Segment {
        std::vector<std::uint8_t> bytes;
        std::size_t given = 0;  ///< of `bytes`
        int file = -1;
        std::uint64_t offset = 0;
        std::uint64_t left = 0;  ///< of the file
    };

    std::deque<Segment> segments_;
};

}  // namespace bildkurier
