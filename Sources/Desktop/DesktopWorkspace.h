// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Workspace.h"

namespace bildkurier {

/// The file manager that the user has chosen.
class DesktopWorkspace final : public Workspace {
public:
    void open(const Url& folder) override;
};

}  // namespace bildkurier
