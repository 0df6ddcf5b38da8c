// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace bildkurier {

/// The files of one type among those about to be imported.
struct TypeSummary {
    std::string ext;  ///< the type folder's name
    std::int64_t count = 0;
    std::int64_t bytes = 0;

    /// One file as `summarize` takes it.
    struct File {
        std::optional<std::string_view> name;
        std::int64_t size = 0;  ///< bytes
    };

    const std::string& id() const { return ext; }

    /// One summary per type that occurs: CR3, JPG and MP4 first, the others by code point.
    static std::vector<TypeSummary> summarize(std::span<const File> files);

    bool operator==(const TypeSummary&) const = default;
};

}  // namespace bildkurier
