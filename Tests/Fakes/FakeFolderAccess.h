// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FolderAccess.h"

#include <optional>
#include <vector>

namespace bildkurier {

/// Grants what the test says.
class FakeFolderAccess final : public FolderAccess {
public:
    bool granted = true;            ///< for every folder
    std::optional<Url> restorable;  ///< what `restore` answers
    bool restoreGrants = false;     ///< `restore` makes everything granted
    std::vector<Url> remembered;

    void remember(const Url& folder) override {
        remembered.push_back(folder);
        granted = true;
    }
    std::optional<Url> restore() override {
        granted = granted || restoreGrants;
        return restorable;
    }
    bool isGranted(const Url& /*url*/) const override { return granted; }
};

}  // namespace bildkurier
