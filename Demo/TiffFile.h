// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Picture.h"

#include <string>

namespace bildkurier {

/// The bytes of an uncompressed TIFF file.
std::string encodeTiff(const Picture& picture);

}  // namespace bildkurier
