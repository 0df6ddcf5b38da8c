// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace bildkurier {

/// File sizes in the system's file style: decimal units, bytes and KB without decimals, MB
/// with at most one, GB and above with at most two, trailing zeros dropped. Any thread.
class ByteFormatter {
public:
    /// Number format and unit names of `locale` (an ICU locale name).
    explicit ByteFormatter(const std::string& locale);
    ByteFormatter(ByteFormatter&&) noexcept;
    ByteFormatter& operator=(ByteFormatter&&) noexcept;
    ~ByteFormatter();

    std::string text(std::int64_t bytes) const;  ///< from 1 byte up
    std::string zeroKilobytes() const;           ///< "0 KB", French "0 Ko"
    std::string zeroMegabytes() const;           ///< "0 MB", French "0 Mo"

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace bildkurier
