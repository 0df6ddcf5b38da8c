// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Url.h"

#include "FileName.h"

#include <utility>

namespace bildkurier {

Url Url::file(std::string path) {
    Url url;
    url.scheme = "file";
    url.path = std::move(path);
    return url;
}

Url Url::appending(std::string_view component) const {
    Url deeper = *this;
    while (deeper.path.ends_with('/')) deeper.path.pop_back();
    deeper.path.append("/").append(component);
    return deeper;
}

std::string Url::lastComponent() const { return std::string(lastPathComponent(path)); }

}  // namespace bildkurier
