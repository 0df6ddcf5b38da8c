// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <vector>

namespace bildkurier {

/// What the fake parts of Foundation were asked to do, and what they answer.
struct FakeFoundation {
    std::vector<std::string> calls;
    std::vector<NSURL*> accessed;  ///< the objects themselves, started and stopped alike
    bool makesBookmarks = true;
    bool findsFolders = true;
    bool isStale = false;
    bool startsAccess = true;
    NSMutableDictionary* defaults = [NSMutableDictionary new];

    static FakeFoundation& shared();
    static void reset();
};

}  // namespace bildkurier
