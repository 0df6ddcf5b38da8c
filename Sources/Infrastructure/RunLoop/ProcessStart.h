// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

namespace bildkurier {

/// Gives the process what it relies on, whatever it was started with: standard streams, which no
/// file of its own can take the place of then, news of its children's end, and no end of its own
/// where somebody stops reading. Call it before anything else.
void prepareProcess();

}  // namespace bildkurier
