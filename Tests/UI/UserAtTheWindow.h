// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

namespace bildkurier {

/// Lets this process belong to a German in Berlin, whatever the machine. First of all in `main`.
void becomeUserInBerlin();

}  // namespace bildkurier
