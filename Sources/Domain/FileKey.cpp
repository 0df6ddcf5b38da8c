// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FileKey.h"

#include "LetterCase.h"

namespace bildkurier {

std::string fileKey(std::string_view name, std::int64_t size) {
    return lowerCased(name).append("|").append(std::to_string(size));
}

}  // namespace bildkurier
