// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CardPlace.h"
#include "FileDescriptor.h"
#include "Result.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>

namespace bildkurier {

/// One time that a card is open, shared by all work on it. Nothing on the card is held open
/// between two pieces of work, so that it can be unmounted. Any thread.
class CardSession {
public:
    enum class End : std::uint8_t { Not, Closed, CardRemoved };

    explicit CardSession(std::shared_ptr<const CardPlace> place);

    const CardPlace& place() const { return *place_; }

    /// Work under way stops soon. Once.
    void end(End how) { ended_ = how; }
    bool hasEnded() const { return ended_ != End::Not; }
    /// Why work fails; absent before the end.
    std::optional<Error> endReason() const;

    /// The card's folder; fails when it cannot be read, or is another one by now. Blocks.
    Result<FileDescriptor> openRoot() const;

private:
    std::shared_ptr<const CardPlace> place_;
    std::atomic<End> ended_ = End::Not;
};

}  // namespace bildkurier
