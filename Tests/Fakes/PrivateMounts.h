// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

namespace bildkurier {

/// From now on what this thread mounts is seen by it and its children only, and gone with
/// them. False where that is not allowed: it takes root.
bool mountPrivately();

}  // namespace bildkurier
