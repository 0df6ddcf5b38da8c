// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DestinationFolder.h"

#include "FileName.h"

#include <fmt/format.h>

namespace bildkurier {

Result<> checkDestinationFolder(const Url& folder, FileStore& fileStore, FolderAccess& access,
                                const std::string& wayOut) {
    if (fileStore.fileSize(folder)) return failure("Der Zielordner ist kein Ordner.");
    if (access.restore() != folder || fileStore.fileExists(folder)) return {};
    return failure(
        fmt::format("Der Zielordner {} ist nicht mehr da. Ist die Platte angesteckt?{}{}",
                    displayText(folder.path), wayOut.empty() ? "" : " ", wayOut));
}

}  // namespace bildkurier
