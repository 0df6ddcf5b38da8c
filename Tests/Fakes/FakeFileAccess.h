// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileAccess.h"

#include <memory>
#include <vector>

namespace bildkurier {

/// Remembers for which files it was asked, and which of them are still held.
class FakeFileAccess final : public FileAccess {
public:
    bool grants = true;
    std::vector<Url> asked;

    Handle start(const Url& file) override {
        asked.push_back(file);
        return grants ? held_ : Handle();
    }
    bool isHeld() const { return held_.use_count() > 1; }

private:
    Handle held_ = std::make_shared<char>();
};

}  // namespace bildkurier
