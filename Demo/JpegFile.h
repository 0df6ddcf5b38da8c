// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Picture.h"

#include <string>

namespace bildkurier {

/// The bytes of a JPEG file; `quality` from 1 to 100.
std::string encodeJpeg(const Picture& picture, int quality);

}  // namespace bildkurier
