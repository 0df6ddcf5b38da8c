// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CardProof.h"

#include <string>

namespace bildkurier {

/// One file of a card that is not proved to be at the destination: "✗ IMG_0001.JPG  (2,1 MB):
/// fehlt am Ziel".
std::string findingLine(const CardProof::Finding& finding);

/// What was not looked at: "ℹ︎ Nicht geprüft: 35 Dateien anderer Art (CR4, PDF)."; empty where
/// there is nothing.
std::string othersLine(const OtherFiles& others);

/// The sentence that closes a proof: "✓ Alle 2000 Dateien (12,4 GB) sind am Ziel, Byte
/// für Byte gleich."
std::string proofSummary(const CardProof::Outcome& outcome);

}  // namespace bildkurier
