// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "FileDescriptor.h"

#include <string>

// Copies that are not yet complete lie in the folder of their target, under a hidden name of
// their own, and are locked while somebody writes them.

namespace bildkurier {

std::string hiddenCopyName();

/// Keeps others from taking the copy for abandoned until it is closed.
void lockHiddenCopy(const FileDescriptor& copy);

/// Removes what crashes have left of copies in a folder. What cannot be removed stays, as do
/// all where files cannot be locked.
void removeAbandonedCopies(int folder);

}  // namespace bildkurier
