// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "PtpObjects.h"

#include <algorithm>
#include <system_error>

namespace bildkurier {

namespace fs = std::filesystem;

void PtpObjects::scan(const std::vector<fs::path>& stores,
                      const std::function<void(const Object&)>& added,
                      const std::function<void(const Object&)>& removed) {
    std::vector<bool> seen(objects_.size(), false);
    std::uint32_t store = 0;
    const std::function<void(const fs::path&, std::uint32_t)> walk = [&](const fs::path& folder,
                                                                         std::uint32_t parent) {
        std::vector<fs::directory_entry> entries;
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error)) {
            entries.push_back(*entry);
        }
        std::ranges::sort(entries);
        for (const auto& entry : entries) {
            const auto [known, isNew] = byPath_.try_emplace(entry.path(), objects_.size());
            const std::size_t index = known->second;
            const bool isFolder = entry.is_directory(error);
            const auto handle = static_cast<std::uint32_t>(firstHandle + index);
            if (isNew) {
                objects_.push_back({handle, parent, store, entry.path(), isFolder});
                seen.push_back(true);
                added(objects_.back());
            }
            seen[index] = true;
            if (isFolder) walk(entry.path(), handle);
        }
    };
    for (std::size_t i = 0; i < stores.size(); ++i) {
        store = storeNumber(i);
        walk(stores[i], 0);
    }
    for (std::size_t i = 0; i < objects_.size(); ++i) {
        if (seen[i] || !objects_[i].isThere) continue;
        objects_[i].isThere = false;
        byPath_.erase(objects_[i].path);
        removed(objects_[i]);
    }
}

const PtpObjects::Object* PtpObjects::find(std::uint32_t handle) const {
    const std::size_t index = handle - firstHandle;
    if (index >= objects_.size() || !objects_[index].isThere) return nullptr;
    return &objects_[index];
}

}  // namespace bildkurier
