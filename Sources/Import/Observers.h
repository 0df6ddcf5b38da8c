// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Handle.h"

#include <functional>
#include <memory>
#include <vector>

namespace bildkurier {

/// Those who want to know when something changes. Main thread.
class Observers {
public:
    /// Calls `changed` at every `notify` until the handle is dropped.
    [[nodiscard]] Handle add(std::function<void()> changed);

    void notify();

private:
    using Observer = std::function<void()>;

    std::vector<std::weak_ptr<Observer>> observers_;
};

}  // namespace bildkurier
