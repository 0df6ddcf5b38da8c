// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <functional>

namespace bildkurier {

/// Waits until `condition` holds, and handles what the accessibility bus says meanwhile; false
/// if it never does.
bool soon(const std::function<bool()>& condition);

/// Handles what the accessibility bus says for a moment.
void listen();

}  // namespace bildkurier
