// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Date.h"

#include <memory>
#include <string>

namespace bildkurier {

/// Turns instants into text of one fixed shape. Any thread.
class DateFormatter {
public:
    /// An ICU date pattern in `locale` (an ICU locale name) and `timeZone` (an Olson name, or
    /// empty for the local time zone of the C library).
    static DateFormatter fromPattern(const std::string& pattern, const std::string& locale,
                                     const std::string& timeZone = {});
    /// The short date style of `locale`.
    static DateFormatter shortDate(const std::string& locale, const std::string& timeZone = {});
    /// The pattern that `locale` prefers for the fields of `skeleton`.
    static DateFormatter fromSkeleton(const std::string& skeleton, const std::string& locale,
                                      const std::string& timeZone = {});

    DateFormatter(DateFormatter&&) noexcept;
    DateFormatter& operator=(DateFormatter&&) noexcept;
    ~DateFormatter();

    std::string text(Date date) const;

private:
    struct Impl;
    explicit DateFormatter(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace bildkurier
