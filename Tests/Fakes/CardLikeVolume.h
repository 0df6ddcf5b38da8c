// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "ReadingGate.h"

#include <memory>
#include <string>

namespace bildkurier {

/// A volume as cards have them: it keeps the case of names but takes two that differ only in it
/// for one, and can hold back who reads. Mounted on `folder` from a `source` that may be a server's
/// URL; what is in it lies in the folder `backing`. Whoever takes one mounts privately before.
class CardLikeVolume {
public:
    CardLikeVolume(const std::string& folder, const std::string& backing,
                   const std::string& source = "bildkurier-test");
    CardLikeVolume(const CardLikeVolume&) = delete;
    CardLikeVolume& operator=(const CardLikeVolume&) = delete;
    ~CardLikeVolume();

    /// False where this process may not mount, or the kernel has no file systems in user space.
    bool isMounted() const { return session_ != nullptr; }

    /// How far files can be read. Only while it is mounted.
    ReadingGate& gate();

private:
    struct Session;
    std::unique_ptr<Session> session_;
};

}  // namespace bildkurier
