// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "PtpOutbox.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>

namespace bildkurier {

void PtpOutbox::add(const PtpPacket& packet) { segments_.push_back({.bytes = packet.bytes()}); }

void PtpOutbox::add(const PtpPacket& packet, const std::filesystem::path& file,
                    std::uint64_t offset, std::uint64_t count) {
    segments_.push_back({.bytes = packet.bytes(),
                         .file = ::open(file.c_str(), O_RDONLY | O_CLOEXEC),
                         .offset = offset,
                         .left = count});
}

void PtpOutbox::clear() {
    for (const Segment& segment : segments_) {
        if (segment.file >= 0) ::close(segment.file);
    }
    segments_.clear();
}

std::size_t PtpOutbox::read(std::span<char> bytes) {
    Segment& segment = segments_.front();
    const std::size_t ready = std::min(bytes.size(), segment.bytes.size() - segment.given);
    std::copy_n(segment.bytes.begin() + static_cast<std::ptrdiff_t>(segment.given), ready,
                bytes.begin());
    segment.given += ready;
    std::size_t count = ready;
    if (count < bytes.size() && segment.left > 0) {
        const std::size_t wanted = std::min<std::uint64_t>(bytes.size() - count, segment.left);
        const ssize_t got =
            ::pread(segment.file, bytes.data() + count, wanted, static_cast<off_t>(segment.offset));
        const std::size_t read = got > 0 ? static_cast<std::size_t>(got) : 0;
        count += read;
        segment.offset += read;
        segment.left = read > 0 ? segment.left - read : 0;
    }
    if (segment.given == segment.bytes.size() && segment.left == 0) {
        if (segment.file >= 0) ::close(segment.file);
        segments_.pop_front();
    }
    return count;
}

}  // namespace bildkurier
