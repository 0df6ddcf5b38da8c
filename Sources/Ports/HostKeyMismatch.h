// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string_view>

namespace bildkurier {

/// What the error of a file store contains when the server showed another key than the one
/// that is stored for it.
inline constexpr std::string_view hostKeyMismatch = "Host key verification failed";

}  // namespace bildkurier
