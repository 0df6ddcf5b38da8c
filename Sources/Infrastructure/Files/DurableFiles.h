// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>

// Changes that outlive a crash or a power cut once they are reported as done. They answer 0 or
// an errno value. Paths end in no slash.

namespace bildkurier {

/// Creates the folder and all missing ones above it. One that exists, or a link to one, is a
/// success once its name is durable too.
int makeFolder(const std::string& path);

/// Gives the regular file `source` the name `target`, on another volume too. `target` appears
/// complete or not at all and never replaces anything: ESTALE when another file takes the place
/// of `source` meanwhile, or its contents change. On a volume without links that cannot rename
/// with care, what gets that name at the last moment would be replaced. A source on another
/// volume that cannot be removed afterwards stays.
int moveFile(const std::string& source, const std::string& target);

}  // namespace bildkurier
