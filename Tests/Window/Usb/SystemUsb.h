// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "TemporaryFolder.h"
#include "VirtualBus.h"

namespace bildkurier {

/// A USB of virtual cameras that programs take for the system's own, since it stands where theirs
/// does; nobody tells of changes. Whoever takes one mounts privately before, and ends it last.
class SystemUsb {
public:
    /// Throws where it cannot be mounted.
    SystemUsb();
    SystemUsb(const SystemUsb&) = delete;
    SystemUsb& operator=(const SystemUsb&) = delete;
    ~SystemUsb();

    VirtualBus bus;

private:
    TemporaryFolder folder_;
};

}  // namespace bildkurier
