// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TypeSummary.h"

#include "ByteSum.h"
#include "FileName.h"
#include "FolderLayout.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace bildkurier {
namespace {

/// Position among the types that come first; all others share the last rank.
std::ptrdiff_t rank(const TypeSummary& summary) {
    static constexpr std::array<std::string_view, 3> preferred = {"CR3", "JPG", "MP4"};
    return std::ranges::find(preferred, summary.ext) - preferred.begin();
}

}  // namespace

std::vector<TypeSummary> TypeSummary::summarize(std::span<const File> files) {
    std::map<std::string, TypeSummary> byType;  // UTF-8 sorts bytewise as by code point
    std::unordered_map<std::string_view, TypeSummary*> byExtension;
    for (const File& file : files) {
        TypeSummary*& known = byExtension[nameParts(file.name.value_or("")).extension];
        if (known == nullptr) known = &byType[typeFolder(file.name)];
        TypeSummary& summary = *known;
        ++summary.count;
        summary.bytes = byteSum(summary.bytes, file.size);
    }
    std::vector<TypeSummary> summaries;
    summaries.reserve(byType.size());
    for (auto& [type, summary] : byType) {
        summary.ext = type;
        summaries.push_back(std::move(summary));
    }
    std::ranges::stable_sort(summaries, std::ranges::less{}, rank);
    return summaries;
}

}  // namespace bildkurier
