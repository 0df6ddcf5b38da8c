// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <expected>
#include <string>
#include <string_view>

// Files that nobody but this user may ever read. Errors are errno values.

namespace bildkurier {

/// Creates the folder and all missing ones above it, for this user alone. One that exists stays
/// as it is. Answers 0 or an error.
int makePrivateFolder(const std::string& path);

/// Writes a new file, for this user alone from the start, in place of what had that name.
/// Answers 0 or an error, which leaves no file.
int writePrivateFile(const std::string& path, std::string_view contents);

/// Makes the names of the files in the folder outlive a power cut, as far as it can.
void flushNames(const std::string& folder);

/// The beginning of a file, at most `limit` bytes. Never waits for what is not a file.
std::expected<std::string, int> readBeginning(const std::string& path, std::size_t limit);

}  // namespace bildkurier
