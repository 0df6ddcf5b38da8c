// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: call to deleted function 'from_chars'|no matching function for call to 'from_chars'
#include <charconv>

double number(const char* begin, const char* end) {
    double value = 0;
    std::from_chars(begin, end, value);
    return value;
}
