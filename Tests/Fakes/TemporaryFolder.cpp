// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TemporaryFolder.h"

#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <ios>
#include <system_error>

namespace bildkurier {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() : TemporaryFolder(fs::temp_directory_path().string()) {}

TemporaryFolder::TemporaryFolder(const std::string& parent)
    : path_(parent + "/bildkurier-test-XXXXXX") {
    if (!::mkdtemp(path_.data())) throw std::system_error(errno, std::generic_category(), path_);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TemporaryFolder::path(std::string_view relative) const {
    return path_ + "/" + std::string(relative);
}

std::string TemporaryFolder::write(std::string_view relative, std::string_view contents) const {
    const fs::path file = path(relative);
    fs::create_directories(file.parent_path());
    std::ofstream stream(file, std::ios::binary);
    stream.exceptions(std::ios::badbit | std::ios::failbit);
    stream.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    stream.close();
    return file.string();
}

std::string TemporaryFolder::makeFolder(std::string_view relative) const {
    fs::create_directories(path(relative));
    return path(relative);
}

}  // namespace bildkurier
