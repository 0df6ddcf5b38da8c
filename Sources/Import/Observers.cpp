// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Observers.h"

#include <utility>

namespace bildkurier {

Handle Observers::add(std::function<void()> changed) {
    auto observer = std::make_shared<Observer>(std::move(changed));
    observers_.push_back(observer);
    return observer;
}

void Observers::notify() {
    std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
    // A copy: an observer may come or go meanwhile.
    for (const auto& weak : std::vector(observers_)) {
        if (const auto observer = weak.lock()) (*observer)();
    }
}

}  // namespace bildkurier
