// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Background.h"
#include "CardCatalogue.h"
#include "CardSession.h"

#include <memory>

namespace bildkurier {

/// What the files of an open card have in common.
struct CardContents {
    CardCatalogue catalogue;
    std::shared_ptr<const CardSession> session;
    Background& background;  ///< downloads run here
};

}  // namespace bildkurier
