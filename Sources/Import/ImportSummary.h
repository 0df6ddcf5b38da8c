// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ImportRunner.h"

#include <string>

namespace bildkurier {

/// The line that closes a run: "Fertig: 212 geladen (14,2 GB), Ø 38,5 MB/s, 2 fehlgeschlagen,
/// abgebrochen", without the pieces that do not apply. `averageSpeed` in bytes per second.
std::string importSummary(const ImportRunner::Progress& progress, double averageSpeed,
                          bool cancelled);

}  // namespace bildkurier
