// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Handle.h"
#include "ImportModel.h"

#include <functional>
#include <memory>

namespace bildkurier {

/// Ends a program that is asked to: after the file in hand where an import runs; asked once more,
/// at once. Main thread.
class Farewell {
public:
    /// `quit` may be called more than once.
    Farewell(std::shared_ptr<ImportModel> model, std::function<void()> quit);

    void ask();

private:
    bool isImporting() const { return model_->phase() == ImportModel::Phase::importing; }

    std::shared_ptr<ImportModel> model_;
    std::function<void()> quit_;
    Handle observation_;  ///< of the import that is to end
};

}  // namespace bildkurier
