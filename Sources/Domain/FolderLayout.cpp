// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FolderLayout.h"

#include "FileName.h"
#include "Formatting.h"
#include "LetterCase.h"

namespace bildkurier {

Url FolderLayout::folder(const Url& destination, Date shot,
                         std::optional<std::string_view> name) const {
    Url folder = destination;
    if (byDate) folder = folder.appending(dayFormatter().text(shot));
    if (byType) folder = folder.appending(typeFolder(name));
    return folder;
}

std::string typeFolder(std::optional<std::string_view> name) {
    std::string extension = upperCased(nameParts(name.value_or("")).extension);
    if (extension.empty()) return "Sonstige";
    if (extension == "JPEG") return "JPG";
    return extension;
}

}  // namespace bildkurier
