// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>
#include <string_view>

namespace bildkurier {

/// Full Unicode case mapping in the root locale (ICU). Bytes that are not valid UTF-8 are
/// kept as they are. Any thread.
std::string lowerCased(std::string_view text);
std::string upperCased(std::string_view text);

}  // namespace bildkurier
