// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DateFormatter.h"

#include "IcuStatus.h"

#include <unicode/datefmt.h>
#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <utility>

namespace bildkurier {
namespace {

std::unique_ptr<icu::TimeZone> zone(const std::string& name) {
    return std::unique_ptr<icu::TimeZone>(
        name.empty() ? icu::TimeZone::detectHostTimeZone()
                     : icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
}

std::string utf8(const icu::UnicodeString& text) {
    std::string result;
    return text.toUTF8String(result);
}

}  // namespace

struct DateFormatter::Impl {
    Impl(std::unique_ptr<icu::DateFormat> dateFormat, const std::string& timeZone)
        : format(std::move(dateFormat)) {
        format->adoptTimeZone(zone(timeZone).release());
    }

    std::unique_ptr<icu::DateFormat> format;  // its const functions may run in any thread
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
    icu::UnicodeString text;
    return utf8(impl_->format->format(static_cast<UDate>(date.time_since_epoch().count()), text));
}

}  // namespace bildkurier
