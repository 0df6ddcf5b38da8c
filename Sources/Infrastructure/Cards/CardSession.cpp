// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardSession.h"

#include "MarkedFolder.h"
#include "SystemError.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

namespace bildkurier {

CardSession::CardSession(std::shared_ptr<const CardPlace> place) : place_(std::move(place)) {}

std::optional<Error> CardSession::endReason() const {
    switch (ended_.load()) {
        case End::Not:
            return std::nullopt;
        case End::Closed:
            return Error{"Das Laden wurde abgebrochen"};
        case End::CardRemoved:
            return Error{"Die Karte wurde entfernt"};
    }
    return std::nullopt;
}

Result<FileDescriptor> CardSession::openRoot() const {
    FileDescriptor root = openFolder(place_->root, O_RDONLY, place_->mark);
    if (!root) return failure("Die Karte ist nicht lesbar: " + systemError(errno).message);
    return root;
}

}  // namespace bildkurier
