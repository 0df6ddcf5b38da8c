// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileStore.h"
#include "FolderAccess.h"
#include "Result.h"
#include "Url.h"

#include <string>

namespace bildkurier {

/// Fails with a finished sentence where the destination `folder` of this computer is a file, or
/// was chosen once and is gone: what is made in its place would hide where the disk appears
/// again. `wayOut`, a sentence, follows in the latter case. Blocks; main thread.
Result<> checkDestinationFolder(const Url& folder, FileStore& fileStore, FolderAccess& access,
                                const std::string& wayOut = {});

}  // namespace bildkurier
