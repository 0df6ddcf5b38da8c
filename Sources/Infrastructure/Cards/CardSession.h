// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CardPlace.h"
#include "FileDescriptor.h"
#include "Result.h"

#include <atomic>
#include <memory>

namespace bildkurier {

/// One time that a card is open, shared by all work on it. Nothing on the card is held open
/// between two pieces of work, so that it can be unmounted. Any thread.
class CardSession {
public:
    explicit CardSession(std::shared_ptr<const CardPlace> place);

    const CardPlace& place() const { return *place_; }

    /// Work under way stops soon.
    void end() { ended_ = true; }
    bool hasEnded() const { return ended_; }

    /// The card's folder; fails when it cannot be read, or is another volume's by now. Blocks.
    Result<FileDescriptor> openRoot() const;

private:
    std::shared_ptr<const CardPlace> place_;
    std::atomic<bool> ended_ = false;
};

}  // namespace bildkurier
