// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string_view>

namespace bildkurier {

/// Whether a camera or a computer has put what has that name on a card for itself, such as an
/// index of the films or a list of what was deleted: nobody would miss it.
bool isBookkeeping(std::string_view name);

}  // namespace bildkurier
