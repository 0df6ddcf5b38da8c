// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Farewell.h"

#include <utility>

namespace bildkurier {

Farewell::Farewell(std::shared_ptr<ImportModel> model, std::function<void()> quit)
    : model_(std::move(model)), quit_(std::move(quit)) {}

void Farewell::ask() {
    if (observation_ || !isImporting()) return quit_();
    observation_ = model_->observe([this] {
        if (!isImporting()) quit_();
    });
    model_->cancelImport();
}

}  // namespace bildkurier
