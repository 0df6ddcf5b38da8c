// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CardCatalogue.h"

namespace bildkurier {

/// Adds to `known` what was found besides, and puts right what was found to be otherwise; what
/// could be read once stays though it could not be read now. Answers whether something changed.
bool updateListing(CardListing& known, const CardListing& found);

/// Removes from `known` the folders of which something might be missing, but is not in `found`,
/// which is everything that could be listed now. Answers whether there were such.
bool dropReadFolders(CardListing& known, const CardListing& found);

}  // namespace bildkurier
