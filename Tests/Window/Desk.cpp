// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Desk.h"

#include "Soon.h"

#include <sstream>
#include <stdexcept>

namespace bildkurier {

namespace {

/// What xdotool answers; empty where it fails.
std::string told(std::vector<std::string> arguments) {
    const auto result =
        ProgramCall{.path = "/usr/bin/xdotool", .arguments = std::move(arguments)}.run();
    return result.exitStatus == 0 ? result.out : "";
}

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

}  // namespace

Desk::Desk()
    : manager_({.path = WINDOW_MANAGER,
                .arguments = {"-fn", "fixed"},
                .deadline = std::chrono::seconds(100)}) {
    // This it alone can tell.
    if (!soon([] { return !told({"get_desktop"}).empty(); }))
        throw std::runtime_error("the window manager does not start");
}

std::vector<std::string> Desk::windows(std::size_t count) {
    std::vector<std::string> found;
    // One that the window manager is just taking cannot be seen.
    const auto areAllThere = [&] {
        std::istringstream lines(told({"search", "--onlyvisible", "--name", "^Bildkurier$"}));
        found.clear();
        for (std::string line; std::getline(lines, line);) found.push_back(line);
        return found.size() == count;
    };
    if (!soon(areAllThere)) throw std::runtime_error("there are more windows, or fewer");
    return found;
}

std::string Desk::active() { return firstLine(told({"getactivewindow"})); }

std::string Desk::inFront() {
    const std::string place = told({"mousemove", "400", "550", "getmouselocation", "--shell"});
    return place.substr(std::min(place.size(), place.find("WINDOW=")));
}

void Desk::bringToFront(const std::string& window) {
    // xdotool first goes to the window's desktop, and to none at all while the window manager has
    // not taken the window yet.
    if (!soon([&] { return told({"get_desktop_for_window", window}) == told({"get_desktop"}); }))
        throw std::runtime_error("the window manager does not take the window");
    told({"windowactivate", "--sync", window, "windowraise", window});
}

void Desk::close() { told({"key", "ctrl+alt+Escape"}); }

}  // namespace bildkurier
