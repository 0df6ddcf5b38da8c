// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

namespace bildkurier {

/// Whether whoever read the standard output has gone away, and wants no more of it.
bool outputReaderIsGone();

}  // namespace bildkurier
