// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Formatting.h"

#include "ByteFormatter.h"
#include "IcuStatus.h"
#include "IcuText.h"

#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/unistr.h>

#include <cmath>
#include <limits>

namespace bildkurier {
namespace {

/// The user's language and country; where none is set, those of the texts.
std::string userLocale() {
    const std::string locale = icu::Locale::getDefault().getName();
    return locale.empty() || locale == "en_US_POSIX" ? "de_DE" : locale;
}

const ByteFormatter& byteFormatter() {
    static const ByteFormatter formatter(userLocale());
    return formatter;
}

/// `value` without its fraction; the greatest integer when it does not fit.
std::int64_t truncated(double value) {
    constexpr double limit = 0x1p63;
    return value < limit ? static_cast<std::int64_t>(value)
                         : std::numeric_limits<std::int64_t>::max();
}

}  // namespace

std::string formatBytes(std::int64_t bytes) {
    return bytes < 1 ? byteFormatter().zeroKilobytes() : byteFormatter().text(bytes);
}

std::string formatCount(std::int64_t count) {
    static const auto formatter =
        icu::number::NumberFormatter::withLocale(icu::Locale(userLocale().c_str()));
    IcuStatus status;
    const auto text = formatter.formatInt(count, status).toString(status);
    status.assertSuccess();
    return utf8(text);
}

std::string formatSpeed(double bytesPerSecond) {
    const bool moves = std::isfinite(bytesPerSecond) && bytesPerSecond >= 1;
    return (moves ? formatBytes(truncated(bytesPerSecond)) : byteFormatter().zeroMegabytes()) +
           "/s";
}

const DateFormatter& dayFormatter() {
    static const auto formatter = DateFormatter::fromPattern("yyyy-MM-dd", "en_US_POSIX");
    return formatter;
}

const DateFormatter& displayDay() {
    static const auto formatter = DateFormatter::shortDate(userLocale());
    return formatter;
}

const DateFormatter& displayDayLong() {
    static const auto formatter = DateFormatter::fromSkeleton("EEEEdMMMMyyyy", userLocale());
    return formatter;
}

const DateFormatter& logTime() {
    static const auto formatter = DateFormatter::fromPattern("HH:mm:ss", "en_US_POSIX");
    return formatter;
}

}  // namespace bildkurier
