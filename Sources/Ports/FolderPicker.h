// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Url.h"

#include <optional>
#include <string>

namespace bildkurier {

/// The system's dialogs for choosing a folder or a file. They block until the user has chosen;
/// absent when the user cancels. Main thread.
class FolderPicker {
public:
    virtual ~FolderPicker() = default;

    /// Shows `start` first.
    virtual std::optional<Url> chooseFolder(const Url& start) = 0;

    /// Shows the folder `start` first; `prompt` is the text of the confirm button.
    virtual std::optional<Url> chooseFile(const Url& start, const std::string& prompt) = 0;
};

}  // namespace bildkurier
