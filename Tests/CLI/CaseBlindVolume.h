// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <memory>
#include <string>

namespace bildkurier {

/// A volume that keeps the case of names but takes two that differ only in it for one, as
/// those of many cards and of other systems do. Mounted on `folder` for this process and its
/// children; what is in it lies in the folder `backing`.
class CaseBlindVolume {
public:
    CaseBlindVolume(const std::string& folder, const std::string& backing);
    CaseBlindVolume(const CaseBlindVolume&) = delete;
    CaseBlindVolume& operator=(const CaseBlindVolume&) = delete;
    ~CaseBlindVolume();

    /// False where this process may not mount, or the kernel has no file systems in user space.
    bool isMounted() const { return session_ != nullptr; }

private:
    struct Session;
    std::unique_ptr<Session> session_;
};

}  // namespace bildkurier
