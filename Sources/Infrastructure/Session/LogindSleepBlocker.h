// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "FileDescriptor.h"
#include "IdleSleepBlocker.h"

#include <memory>
#include <string>

namespace bildkurier {

/// Asks systemd-logind over the system bus to keep the machine awake, in the background. Without
/// bus or logind nothing happens; without an answer it gives up after a second. The end of the
/// process ends it too.
class LogindSleepBlocker final : public IdleSleepBlocker {
public:
    explicit LogindSleepBlocker(Background& background) : background_(background) {}

    void begin(const std::string& reason) override;
    void end() override;

private:
    Background& background_;
    /// Logind keeps the machine awake while it is open. Null while nobody wants that.
    std::shared_ptr<FileDescriptor> inhibitor_;
};

}  // namespace bildkurier
