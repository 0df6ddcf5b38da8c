// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FolderPicker.h"

#include <optional>
#include <string>

namespace bildkurier {

/// Answers the system's dialog for a file with what the command line names; no folder.
class GivenFile final : public FolderPicker {
public:
    explicit GivenFile(std::optional<std::string> path);

    std::optional<Url> chooseFolder(const Url& start) override;
    std::optional<Url> chooseFile(const Url& start, const std::string& prompt) override;

private:
    std::optional<Url> file_;
};

}  // namespace bildkurier
