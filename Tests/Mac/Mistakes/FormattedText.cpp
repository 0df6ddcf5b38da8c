// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: 'to_chars' is unavailable: introduced in macOS 13.4
#include <format>
#include <string>

std::string text(double value) { return std::format("{}", value); }
