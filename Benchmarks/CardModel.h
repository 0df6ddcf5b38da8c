// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "AppContainer.h"
#include "ThreadPool.h"
#include "TimedQueue.h"

#include <filesystem>
#include <functional>
#include <optional>

namespace bildkurier {

/// All that a program has behind its front end, with one card and a destination. Main thread.
class CardModel {
public:
    CardModel(const std::filesystem::path& card, const std::filesystem::path& destination);
    CardModel(const CardModel&) = delete;
    CardModel& operator=(const CardModel&) = delete;
    ~CardModel();

    /// Runs until this is so while nothing runs; it is asked after each change.
    void runUntil(const std::function<bool()>& reached);
    /// Runs until the card and the destination have been compared.
    void runUntilReady();

    ImportModel& model() const { return *parts_.model; }
    TimedQueue& queue() { return queue_; }

private:
    TimedQueue queue_;
    std::optional<ThreadPool> pool_{std::in_place};
    AppContainer::Parts parts_;
};

}  // namespace bildkurier
