// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "PassingFileStore.h"

#include <functional>
#include <utility>

namespace bildkurier {

/// Passes everything on to another store; while a file is on its way to its place, other things
/// happen.
class SlowMoves final : public PassingFileStore {
public:
    using PassingFileStore::PassingFileStore;

    std::function<void()> meanwhile;  ///< called in the midst of the next move; optional

    Result<> moveItem(const Url& source, const Url& target) override {
        if (const auto happen = std::exchange(meanwhile, nullptr)) happen();
        return PassingFileStore::moveItem(source, target);
    }
};

}  // namespace bildkurier
