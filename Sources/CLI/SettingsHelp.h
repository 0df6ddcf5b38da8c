// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>

namespace bildkurier {

/// What can be set, with what it takes and means: several lines, the last without its end.
std::string settingsHelp();

}  // namespace bildkurier
