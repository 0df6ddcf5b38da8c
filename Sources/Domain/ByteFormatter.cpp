// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ByteFormatter.h"

#include "IcuStatus.h"
#include "IcuText.h"

#include <unicode/formattedvalue.h>
#include <unicode/locid.h>
#include <unicode/measunit.h>
#include <unicode/numberformatter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/unumberformatter.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <mutex>
#include <vector>

namespace bildkurier {
namespace {

struct Unit {
    const char* name;         // ICU's
    UNumberUnitWidth width;   // in which ICU names it the way file sizes do
    std::int32_t powerOfTen;  // in bytes
    std::int32_t decimals;    // at most
    std::int64_t last;        // the greatest byte count that does not round to 1000 of it
};

constexpr std::array<Unit, 7> units = {{
    {"byte", UNUM_UNIT_WIDTH_FULL_NAME, 0, 0, 999},
    {"kilobyte", UNUM_UNIT_WIDTH_SHORT, 3, 0, 999'499},
    {"megabyte", UNUM_UNIT_WIDTH_SHORT, 6, 1, 999'949'999},
    {"gigabyte", UNUM_UNIT_WIDTH_SHORT, 9, 2, 999'994'999'999},
    {"terabyte", UNUM_UNIT_WIDTH_SHORT, 12, 2, 999'994'999'999'999},
    {"petabyte", UNUM_UNIT_WIDTH_SHORT, 15, 2, 999'994'999'999'999'999},
    {"exabyte", UNUM_UNIT_WIDTH_NARROW, 18, 2, std::numeric_limits<std::int64_t>::max()},
}};
constexpr std::size_t kilobyte = 1;
constexpr std::size_t megabyte = 2;

/// One plain space between number and unit, where ICU has a no-break space or none.
void separate(icu::UnicodeString& text, std::int32_t unit) {
    if (unit == 0) return;
    if (u_isUWhiteSpace(text.char32At(unit - 1))) {
        text.replace(unit - 1, 1, u' ');
    } else {
        text.insert(unit, u' ');
    }
}

/// KB and Ko, where ICU has kB and ko.
void capitalize(icu::UnicodeString& text, std::int32_t unit) {
    const UChar32 initial = text.char32At(unit);
    text.replace(unit, U16_LENGTH(initial), u_toupper(initial));
}

icu::number::LocalizedNumberFormatter formatter(const Unit& unit, const icu::Locale& locale) {
    IcuStatus status;
    const auto measure = icu::MeasureUnit::forIdentifier(unit.name, status);
    status.assertSuccess();
    return icu::number::NumberFormatter::withLocale(locale)
        .unit(measure)
        .unitWidth(unit.width)
        .scale(icu::number::Scale::powerOfTen(-unit.powerOfTen))
        .precision(icu::number::Precision::maxFraction(unit.decimals))
        .roundingMode(UNUM_ROUND_HALFEVEN);
}

std::string textOf(std::int64_t bytes, const Unit& unit,
                   const icu::number::LocalizedNumberFormatter& formatter) {
    IcuStatus status;
    const auto number = formatter.formatInt(bytes, status);
    auto text = number.toString(status);
    icu::ConstrainedFieldPosition unitName;
    unitName.constrainField(UFIELD_CATEGORY_NUMBER, UNUM_MEASURE_UNIT_FIELD);
    if (number.nextPosition(unitName, status)) {
        if (unit.powerOfTen > 0) capitalize(text, unitName.getStart());
        separate(text, unitName.getStart());
    }
    status.assertSuccess();
    return utf8(text);
}

}  // namespace

struct ByteFormatter::Impl {
    std::vector<icu::number::LocalizedNumberFormatter> formatters;  ///< as `units`

    mutable std::mutex mutex;  ///< ICU finishes a formatter only while it is used

    std::string text(std::int64_t bytes, std::size_t unit) const {
        const std::lock_guard lock(mutex);
        return textOf(bytes, units.at(unit), formatters.at(unit));
    }
};

ByteFormatter::ByteFormatter(const std::string& locale) : impl_(std::make_unique<Impl>()) {
    for (const Unit& unit : units)
        impl_->formatters.push_back(formatter(unit, icu::Locale(locale.c_str())));
}
ByteFormatter::ByteFormatter(ByteFormatter&&) noexcept = default;
ByteFormatter& ByteFormatter::operator=(ByteFormatter&&) noexcept = default;
ByteFormatter::~ByteFormatter() = default;

std::string ByteFormatter::text(std::int64_t bytes) const {
    const auto unit = std::ranges::lower_bound(units, bytes, {}, &Unit::last);
    return impl_->text(bytes, static_cast<std::size_t>(unit - units.begin()));
}

std::string ByteFormatter::zeroKilobytes() const { return impl_->text(0, kilobyte); }

std::string ByteFormatter::zeroMegabytes() const { return impl_->text(0, megabyte); }

}  // namespace bildkurier
