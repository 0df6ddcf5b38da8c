// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProcessInfoSleepBlocker.h"

#include "FoundationValues.h"

namespace bildkurier {

void ProcessInfoSleepBlocker::begin(const std::string& reason) {
    if (activity_) return;
    NSString* const shown = stringOf(reason);
    const id<NSObject> token = [NSProcessInfo.processInfo
        beginActivityWithOptions:NSActivityUserInitiated
                          reason:shown != nil ? static_cast<NSString* _Nonnull>(shown) : @""];
    activity_ = {this, [token](void*) { [NSProcessInfo.processInfo endActivity:token]; }};
}

void ProcessInfoSleepBlocker::end() { activity_.reset(); }

}  // namespace bildkurier
