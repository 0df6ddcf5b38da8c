// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MountedVolume.h"

namespace bildkurier {

namespace {

/// Whether two values are known and different.
template <class Value>
bool differ(const Value& before, const Value& now) {
    return before != Value() && now != Value() && before != now;
}

}  // namespace

MountedVolume mountedVolume(const Mount& mount, const std::string& folder) {
    // The number first: should another volume be mounted meanwhile, the next look shows it.
    const auto number = mountNumber(folder);
    return {.mount = mount, .number = number, .identity = volumeIdentity(mount)};
}

bool isSameVolume(const MountedVolume& before, const MountedVolume& now) {
    const Mount& a = before.mount;
    const Mount& b = now.mount;
    return a.id == b.id && a.device == b.device && a.point == b.point && a.source == b.source &&
           !differ(before.number, now.number) && !differ(before.identity.uuid, now.identity.uuid);
}

}  // namespace bildkurier
