// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"
#include "SystemCall.h"

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <span>

namespace bildkurier {

/// Writes all `bytes`, in as many steps as it takes; answers 0 or an errno value.
inline int writeAll(const FileDescriptor& file, std::span<const char> bytes) {
    while (!bytes.empty()) {
        const auto count = retried([&] { return ::write(file.get(), bytes.data(), bytes.size()); });
        if (count < 0) return errno;
        if (count == 0) return EIO;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return 0;
}

}  // namespace bildkurier
