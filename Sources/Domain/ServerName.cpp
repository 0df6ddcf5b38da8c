// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ServerName.h"

#include "FileName.h"

namespace bildkurier {

namespace {

/// Whether no program takes it for an option, and no shell for anything but words.
bool isPlain(std::string_view text) {
    return !text.empty() && !text.starts_with('-') && !text.contains(" -") &&
           !hasControlCharacters(text) &&
           text.find_first_of("'`\"$;&<>|(){}") == std::string_view::npos;
}

}  // namespace

bool isHostName(std::string_view text) {
    const bool isBracketed = text.starts_with('[') && text.ends_with(']');
    if (isBracketed) text = text.substr(1, text.size() - 2);
    if (text.contains(':') && !isBracketed) return false;
    return isPlain(text) && text.find_first_of(" []/\\@,?#*!") == std::string_view::npos;
}

bool isLoginName(std::string_view text) {
    return isPlain(text) && !text.contains(':') && !text.ends_with('\\');
}

}  // namespace bildkurier
