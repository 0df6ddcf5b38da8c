// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileStore.h"

#include "FileName.h"

namespace bildkurier {

std::string FileStore::freeName(std::string_view name, const Url& folder) {
    std::string candidate(name);
    const auto [base, extension] = nameParts(name);
    for (std::uint64_t n = 1; fileExists(folder.appending(candidate)); ++n) {
        candidate = std::string(base) + "_" + std::to_string(n);
        if (!extension.empty()) candidate.append(".").append(extension);
    }
    return candidate;
}

}  // namespace bildkurier
