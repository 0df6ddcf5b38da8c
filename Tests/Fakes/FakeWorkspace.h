// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Workspace.h"

#include <vector>

namespace bildkurier {

/// Remembers what it was asked to show.
class FakeWorkspace final : public Workspace {
public:
    std::vector<Url> opened;

    void open(const Url& folder) override { opened.push_back(folder); }
};

}  // namespace bildkurier
