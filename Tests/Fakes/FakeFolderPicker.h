// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FolderPicker.h"

#include <optional>
#include <string>
#include <vector>

namespace bildkurier {

/// Chooses what the test says.
class FakeFolderPicker final : public FolderPicker {
public:
    std::optional<Url> choice;
    std::vector<Url> starts;  ///< the folders it was asked to show first
    std::vector<std::string> prompts;

    std::optional<Url> chooseFolder(const Url& start) override {
        starts.push_back(start);
        return choice;
    }
    std::optional<Url> chooseFile(const Url& start, const std::string& prompt) override {
        starts.push_back(start);
        prompts.push_back(prompt);
        return choice;
    }
};

}  // namespace bildkurier
