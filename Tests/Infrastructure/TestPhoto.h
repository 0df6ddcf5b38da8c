// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <map>
#include <string>

namespace bildkurier {

/// The bytes of a tiny JPEG with the metadata given as Exif key and value.
std::string testPhoto(const std::map<std::string, std::string>& metadata);

}  // namespace bildkurier
