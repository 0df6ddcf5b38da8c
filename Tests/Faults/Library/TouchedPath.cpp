// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TouchedPath.h"

#include "Kernel.h"

#include <fcntl.h>

#include <algorithm>

namespace bildkurier::faults {

TouchedPath::TouchedPath(int descriptor)
    : length_(descriptor == AT_FDCWD
                  ? Kernel::workingFolder(bytes_.data(), PATH_MAX)
                  : Kernel::descriptorPath(descriptor, bytes_.data(), PATH_MAX)) {}

TouchedPath::TouchedPath(int folder, const char* path)
    : TouchedPath(path && *path == '/' ? TouchedPath() : TouchedPath(folder)) {
    if (!path || *path == '\0') return;
    if (*path != '/') append("/");
    append(path);
}

bool TouchedPath::isWithin(std::string_view root) const {
    const auto path = text();
    return path.starts_with(root) && (path.size() == root.size() || path[root.size()] == '/');
}

void TouchedPath::append(std::string_view text) {
    const auto fits = text.substr(0, bytes_.size() - length_);
    std::ranges::copy(fits, bytes_.begin() + static_cast<std::ptrdiff_t>(length_));
    length_ += fits.size();
}

}  // namespace bildkurier::faults
