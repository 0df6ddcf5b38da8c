// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string_view>

namespace bildkurier {

// What may stand in front of the path in a server's address. Programs get it on their command
// line, and may pass it on to a shell that the user has configured for them.

/// Whether it can be a computer's name, or its number: "nas", "192.168.0.7" or "[::1]". Without a
/// port.
bool isHostName(std::string_view text);

/// Whether somebody may log in under that name.
bool isLoginName(std::string_view text);

}  // namespace bildkurier
