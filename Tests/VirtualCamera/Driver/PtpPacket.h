// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace bildkurier {

/// Bytes in the picture transfer protocol's order: the lowest first.
class PtpPacket {
public:
    PtpPacket& u8(std::uint8_t value) { return put(value, 1); }
    PtpPacket& u16(std::uint16_t value) { return put(value, 2); }
    PtpPacket& u32(std::uint32_t value) { return put(value, 4); }
    PtpPacket& u64(std::uint64_t value) { return put(value, 8); }
    /// Its length in characters, which have two bytes each, with the zero at the end.
    PtpPacket& text(std::string_view ascii) {
        if (ascii.empty()) return u8(0);
        u8(static_cast<std::uint8_t>(ascii.size() + 1));
        for (const char c : ascii) u16(static_cast<unsigned char>(c));
        return u16(0);
    }
    PtpPacket& codes(std::span<const std::uint16_t> values) {
        u32(static_cast<std::uint32_t>(values.size()));
        for (const auto value : values) u16(value);
        return *this;
    }
    PtpPacket& append(const PtpPacket& other) {
        bytes_.insert(bytes_.end(), other.bytes_.begin(), other.bytes_.end());
        return *this;
    }

    const std::vector<std::uint8_t>& bytes() const { return bytes_; }
    std::size_t size() const { return bytes_.size(); }

private:
    PtpPacket& put(std::uint64_t value, int count) {
        for (int i = 0; i < count; ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> 8 * i));
        return *this;
    }

    std::vector<std::uint8_t> bytes_;
};

/// The number at `offset`; 0 beyond the end.
inline std::uint32_t ptpNumber(std::span<const std::uint8_t> bytes, std::size_t offset,
                               std::size_t size = 4) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size && offset + i < bytes.size(); ++i)
        value |= static_cast<std::uint32_t>(bytes[offset + i]) << 8 * i;
    return value;
}

}  // namespace bildkurier
