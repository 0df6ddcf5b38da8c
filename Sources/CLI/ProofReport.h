// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CardProof.h"
#include "Report.h"

namespace bildkurier {

/// Has `report`, which must outlive the proof, tell what `proof` finds.
void tellOf(CardProof& proof, Report& report);

/// Tells what the proof of a whole card came to, and first what it says nothing of.
void tellOf(const CardProof::Outcome& outcome, Report& report);

}  // namespace bildkurier
