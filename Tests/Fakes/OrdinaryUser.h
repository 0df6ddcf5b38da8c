// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <functional>

namespace bildkurier {

/// Runs `action` as a user whom permissions bind: on a thread of its own that is not root,
/// where this process is.
void runAsOrdinaryUser(const std::function<void()>& action);

}  // namespace bildkurier
