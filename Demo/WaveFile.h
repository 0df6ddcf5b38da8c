// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>

namespace bildkurier {

/// The bytes of a WAV file with one tone that fades out; `pitch` in Hz.
std::string encodeTone(double pitch, double seconds);

}  // namespace bildkurier
