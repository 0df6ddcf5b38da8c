// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileDescriptor.h"

#include <unistd.h>

#include <cerrno>

namespace bildkurier {

FileDescriptor::~FileDescriptor() { close(); }

int FileDescriptor::close() {
    const int descriptor = std::exchange(descriptor_, -1);
    if (descriptor < 0) return 0;
    return ::close(descriptor) == 0 ? 0 : errno;
}

}  // namespace bildkurier
