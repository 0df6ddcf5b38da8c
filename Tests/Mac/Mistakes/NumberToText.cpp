// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: 'to_chars' is unavailable: introduced in macOS 13.4
#include <charconv>

char* text(char* begin, char* end, double value) { return std::to_chars(begin, end, value).ptr; }
