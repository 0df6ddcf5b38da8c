// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FolderPicker.h"

namespace bildkurier {

/// The open panel, run modally.
class FinderFolderPicker final : public FolderPicker {
public:
    std::optional<Url> chooseFolder(const Url& start) override;
    std::optional<Url> chooseFile(const Url& start, const std::string& prompt) override;
};

}  // namespace bildkurier
