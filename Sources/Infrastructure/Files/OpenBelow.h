// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"

#include <string_view>

namespace bildkurier {

/// Opens `path` below the folder `root`, which `path` being empty means itself; `flags` as for
/// open(2). Goes down one name at a time and through no link, so that none put there leads out
/// of `root`. Invalid with errno set on failure.
FileDescriptor openBelow(const FileDescriptor& root, std::string_view path, int flags);

}  // namespace bildkurier
