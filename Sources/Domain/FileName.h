// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <string>
#include <string_view>

namespace bildkurier {

/// The name after the last "/", trailing slashes left out; "/" for the root. The view points
/// into `path`.
std::string_view lastPathComponent(std::string_view path);

/// A file name split at its last dot.
struct NameParts {
    std::string_view base;
    std::string_view extension;  ///< without the dot; empty without one, or when nothing follows it
};

/// Splits the last path component of `name`. The views point into `name`.
NameParts nameParts(std::string_view name);

/// Whether there is a control character, such as NUL or a line break, in `text`.
bool hasControlCharacters(std::string_view text);

/// Whether `name` is one plain path component that may reach a file system: not empty, "."
/// or "..", no "/", no NUL or other control character, at most 255 bytes. It need not be
/// valid UTF-8.
bool isPlainFileName(std::string_view name);

/// `text` for human eyes: valid UTF-8, with replacement characters (U+FFFD) for bytes that
/// are not, and what cannot be seen made visible: control characters as their pictures, "␊"
/// for a line feed, and all others, such as those that turn the direction of writing, begin a
/// line or have no width, as U+FFFD. Only the joiners that scripts and emoji need remain.
std::string displayText(std::string_view text);

}  // namespace bildkurier
