// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "FolderMark.h"

#include <optional>
#include <string>

namespace bildkurier {

/// The mark of an open folder; absent with errno set on failure.
std::optional<FolderMark> markOf(const FileDescriptor& folder);

/// Opens the folder `path`, followed if it is a link; `flags` as for open(2). Fails where it does
/// not bear `mark`, because another one has come to its place. Invalid with errno set on failure.
FileDescriptor openFolder(const std::string& path, int flags,
                          const std::optional<FolderMark>& mark = std::nullopt);

}  // namespace bildkurier
