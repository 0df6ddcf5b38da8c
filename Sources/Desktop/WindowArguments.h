// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace bildkurier {

/// What the program with the window was started for.
struct WindowArguments {
    std::vector<std::string> cards;  ///< folders to take for cameras, absolute
};

/// What there is to say instead of opening a window.
struct WindowAnswer {
    int exitStatus = 0;
    std::string text;  ///< for standard output on success, else the error; no line break at the end
};

/// Understands the program's arguments, the program's name first; needs neither an application
/// nor a display.
std::expected<WindowArguments, WindowAnswer> parseWindowArguments(std::span<char* const> arguments);

/// What a program that was started so has to say where the window is open already, and has answered
/// or not; absent where that has come to the front, and that is all.
std::optional<WindowAnswer> answerOfSecond(const WindowArguments& arguments, bool hasAnswered);

}  // namespace bildkurier
