// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>
#include <string_view>

namespace bildkurier {

bool isUtf8(std::string_view text);

/// `text`, which is UTF-8, without the Unicode white space and line breaks at both ends.
std::string trimmed(std::string_view text);

}  // namespace bildkurier
