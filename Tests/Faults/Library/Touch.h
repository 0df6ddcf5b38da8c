// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "TouchedPath.h"

#include <cstddef>

namespace bildkurier::faults {

/// One call of the program that touches a file system: its name, what it is about, and how it
/// can fail.
struct Touch {
    Touch(const char* callName, int descriptor) : name(callName), path(descriptor) {}
    Touch(const char* callName, int folder, const char* callPath)
        : name(callName), path(folder, callPath), usesPath(true) {}

    Touch& andPath(int folder, const char* secondPath) {
        second = TouchedPath(folder, secondPath);
        return *this;
    }
    Touch& andDescriptor(int descriptor) {
        second = TouchedPath(descriptor);
        return *this;
    }
    Touch& needingSpace(bool needs = true) {
        needsSpace = needs;
        return *this;
    }

    Touch& writing(std::size_t count) {
        bytes = count;
        return needingSpace();
    }

    const char* name;
    TouchedPath path;
    TouchedPath second;       ///< empty for calls about one thing
    bool usesPath = false;    ///< can be refused for want of permission
    bool needsSpace = false;  ///< can fail on a full volume
    std::size_t bytes = 0;    ///< to be written
};

}  // namespace bildkurier::faults
