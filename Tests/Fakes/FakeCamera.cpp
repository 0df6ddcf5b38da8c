// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeCamera.h"

namespace bildkurier {

void FakeCamera::sessionOpened(const std::optional<Error>& error) {
    if (const auto receiver = delegate.lock()) receiver->cameraDidOpenSession(*this, error);
}

void FakeCamera::catalogReady() {
    if (const auto receiver = delegate.lock()) receiver->cameraCatalogReady(*this);
}

void FakeCamera::catalogChanged() {
    if (const auto receiver = delegate.lock()) receiver->cameraCatalogChanged(*this);
}

}  // namespace bildkurier
