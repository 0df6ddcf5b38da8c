// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace bildkurier {

/// A tree of files to measure with: `files` of them spread evenly over `folders`, made three
/// minutes after one another.
struct Fixture {
    std::string name;  ///< of its folder
    std::size_t files = 0;
    std::size_t folders = 1;
    std::size_t size = 0;  ///< bytes of each; sizes differ by a few bytes when sparse
    bool sparse = false;   ///< only the sizes matter
    std::string suffix = ".JPG";
};

/// Where all of it lies: build/bench below the current folder.
std::filesystem::path benchFolder();

/// A folder in the computer's memory, where no disk makes times differ from run to run.
std::filesystem::path memoryFolder();

/// Makes the fixture unless it is there from an earlier run; answers its folder.
std::filesystem::path made(const Fixture& fixture);

}  // namespace bildkurier
