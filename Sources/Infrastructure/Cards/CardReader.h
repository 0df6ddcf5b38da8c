// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CaptureDates.h"
#include "CardCatalogue.h"
#include "CardSession.h"
#include "FileDescriptor.h"

namespace bildkurier {

/// The media files on the card whose folder is open as `root`, with the dates on which its
/// photos were taken where `captureDates` is not null. A folder that cannot be read stands
/// among them, so that nobody takes what is in it for imported. Blocks; stops early when the
/// session ends.
CardCatalogue readCard(const CardSession& session, const FileDescriptor& root,
                       CaptureDates* captureDates);

}  // namespace bildkurier
