// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#import "ProcessInfoSleepBlocker.h"

#import "FoundationText.h"

#import <Foundation/Foundation.h>

namespace bildkurier {

void ProcessInfoSleepBlocker::begin(const std::string& reason) {
    if (activity_) return;
    NSProcessInfo* process = NSProcessInfo.processInfo;
    id<NSObject> activity = [process
        beginActivityWithOptions:NSActivityUserInitiated | NSActivityIdleSystemSleepDisabled
                          reason:stringOf(reason)];
    // Any address but null: a handle of nothing would count as none.
    activity_ = Handle(this, [process, activity](void*) { [process endActivity:activity]; });
}

}  // namespace bildkurier
