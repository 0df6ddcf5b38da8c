// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "NativeCamera.h"
#include "Result.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace bildkurier {

/// Copies the file open as `source` to where `request` says, with its modification time as the
/// card shows it. The copy grows in steps of at most 4 MiB; `whyStop` is asked before it is made
/// and before each of them, and fails it with what it answers. Fails, and leaves no copy, unless
/// it has exactly `size` bytes; a copy that somebody else has put in its place since `whyStop`
/// had an answer is left alone. Never writes through a link. Blocks.
Result<> copyFile(const FileDescriptor& source, std::int64_t size, const DownloadRequest& request,
                  const std::function<std::optional<Error>()>& whyStop);

/// What opening or reading a file on a card fails with.
std::unexpected<Error> unreadableOnCard(int code);

}  // namespace bildkurier
