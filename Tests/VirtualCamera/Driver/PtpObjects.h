// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace bildkurier {

/// The files and folders on a virtual camera's cards, each with its number.
class PtpObjects {
public:
    struct Object {
        std::uint32_t handle = 0;
        std::uint32_t parent = 0;  ///< 0: the card itself
        std::uint32_t store = 0;
        std::filesystem::path path;
        bool isFolder = false;
        bool isThere = true;
    };

    /// Looks at the cards again; an object keeps its number.
    void scan(
        const std::vector<std::filesystem::path>& stores,
        const std::function<void(const Object&)>& added = [](const Object&) {},
        const std::function<void(const Object&)>& removed = [](const Object&) {});
    void clear() { *this = PtpObjects(); }

    /// Null where there is none.
    const Object* find(std::uint32_t handle) const;
    /// By number.
    const std::vector<Object>& all() const { return objects_; }

    /// The number of a card.
    static std::uint32_t storeNumber(std::size_t index) {
        return static_cast<std::uint32_t>((index + 1) << 16 | 1);
    }

private:
    static constexpr std::uint32_t firstHandle = 0x100;

    std::vector<Object> objects_;
    std::unordered_map<std::string, std::size_t> byPath_;
};

}  // namespace bildkurier
