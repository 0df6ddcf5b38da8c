// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MediaContents.h"

#include "CardFile.h"

#include <cstddef>

namespace bildkurier {

std::vector<NativeItem> MediaContents::mediaFiles() const {
    std::vector<NativeItem> items;
    const auto& entries = catalogue_.entries;
    for (std::size_t i = 0; i < entries.size(); i += 1 + entries[i].sidecars)
        items.push_back({std::make_shared<CardFile>(shared_from_this(), i)});
    return items;
}

}  // namespace bildkurier
