// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardSession.h"

#include "MountedVolume.h"
#include "SystemCall.h"
#include "SystemError.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

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
    const auto unreadable = [](int code) {
        return failure("Die Karte ist nicht lesbar: " + systemError(code).message);
    };
    FileDescriptor root(retried(
        [this] { return ::open(place_->root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    struct stat found{};
    if (!root || ::fstat(root.get(), &found) != 0) return unreadable(errno);
    const bool isOther =
        place_->mountNumber &&
        mountNumber(fmt::format("/proc/self/fd/{}", root.get())) != place_->mountNumber;
    if (isOther || found.st_dev != place_->device) return unreadable(ENODEV);
    return root;
}

}  // namespace bildkurier
