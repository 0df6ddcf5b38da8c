// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <sys/resource.h>

#include <csignal>
#include <cstdint>

namespace bildkurier {

/// Lets this process write no file larger than some bytes for as long as this lives, as on a
/// disk that is full.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes);
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit();

private:
    rlimit before_{};
    void (*handler_)(int);
};

}  // namespace bildkurier
