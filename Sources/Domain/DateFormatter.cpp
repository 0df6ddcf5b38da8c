// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DateFormatter.h"

#include "IcuStatus.h"
#include "IcuText.h"

#include <unicode/datefmt.h>
#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <chrono>
#include <ctime>
#include <utility>

namespace bildkurier {
namespace {

/// What clocks here are ahead of UTC at `date`, by the C library, which also turns wall clocks
/// into dates: ICU has a time zone database of its own, which may be of another age, and does
/// not know every zone that a system can be set to.
std::chrono::seconds localOffset(Date date) {
    const std::time_t seconds =
        std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
    std::tm wallClock{};
    if (::localtime_r(&seconds, &wallClock) == nullptr) return {};
    return std::chrono::seconds(wallClock.tm_gmtoff);
}

double milliseconds(std::chrono::milliseconds duration) {
    return static_cast<double>(duration.count());
}

}  // namespace

struct DateFormatter::Impl {
    Impl(std::unique_ptr<icu::DateFormat> dateFormat, const std::string& timeZone)
        : format(std::move(dateFormat)), isLocal(timeZone.empty()) {
        format->adoptTimeZone(icu::TimeZone::createTimeZone(
            icu::UnicodeString::fromUTF8(isLocal ? "UTC" : timeZone)));
    }

    std::unique_ptr<icu::DateFormat> format;  // its const functions may run in any thread
    bool isLocal;
};

DateFormatter DateFormatter::fromPattern(const std::string& pattern, const std::string& locale,
                                         const std::string& timeZone) {
    IcuStatus status;
    auto format = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString::fromUTF8(pattern),
                                                          icu::Locale(locale.c_str()), status);
    status.assertSuccess();
    return DateFormatter(std::make_unique<Impl>(std::move(format), timeZone));
}

DateFormatter DateFormatter::shortDate(const std::string& locale, const std::string& timeZone) {
    IcuStatus status;
    std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateInstance(icu::DateFormat::kShort, icu::Locale(locale.c_str())));
    if (!format) status.set(U_MISSING_RESOURCE_ERROR);
    status.assertSuccess();
    return DateFormatter(std::make_unique<Impl>(std::move(format), timeZone));
}

DateFormatter DateFormatter::fromSkeleton(const std::string& skeleton, const std::string& locale,
                                          const std::string& timeZone) {
    IcuStatus status;
    const std::unique_ptr<icu::DateTimePatternGenerator> generator(
        icu::DateTimePatternGenerator::createInstance(icu::Locale(locale.c_str()), status));
    status.assertSuccess();
    const auto pattern = generator->getBestPattern(icu::UnicodeString::fromUTF8(skeleton), status);
    status.assertSuccess();
    return fromPattern(utf8(pattern), locale, timeZone);
}

DateFormatter::DateFormatter(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}
DateFormatter::DateFormatter(DateFormatter&&) noexcept = default;
DateFormatter& DateFormatter::operator=(DateFormatter&&) noexcept = default;
DateFormatter::~DateFormatter() = default;

std::string DateFormatter::text(Date date) const {
    UDate shown = milliseconds(date.time_since_epoch());
    if (impl_->isLocal) shown += milliseconds(localOffset(date));
    icu::UnicodeString text;
    return utf8(impl_->format->format(shown, text));
}

}  // namespace bildkurier
