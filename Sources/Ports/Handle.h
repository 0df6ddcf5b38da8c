// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <memory>

namespace bildkurier {

/// Keeps something going; let go of it to stop. Timers and observations.
using Handle = std::shared_ptr<void>;

}  // namespace bildkurier
