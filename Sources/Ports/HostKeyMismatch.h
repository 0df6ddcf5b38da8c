// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string_view>

namespace bildkurier {

/// What the error of a file store contains when a server shows another key than before.
inline constexpr std::string_view hostKeyMismatch = "Host key verification failed";

}  // namespace bildkurier
