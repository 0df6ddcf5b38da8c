// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "RunLock.h"

namespace bildkurier {

/// Says whether a run is allowed, and knows whether one is.
class FakeRunLock final : public RunLock {
public:
    bool takenByAnother = false;
    bool held = false;

    Result<> acquire() override {
        if (takenByAnother) return failure("Es läuft schon ein Import.");
        held = true;
        return {};
    }
    void release() override { held = false; }
};

}  // namespace bildkurier
