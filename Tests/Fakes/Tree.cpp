// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Tree.h"

#include <filesystem>
#include <fstream>
#include <ios>
#include <stdexcept>

namespace bildkurier {

namespace fs = std::filesystem;

namespace {

std::string contents(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) throw std::runtime_error("cannot read " + path.string());
    std::string bytes(fs::file_size(path), '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
}

}  // namespace

Tree tree(const std::string& folder) {
    Tree found;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        const std::string path = entry.path().lexically_relative(folder).string();
        if (entry.is_symlink()) {
            found[path] = "-> " + fs::read_symlink(entry.path()).string();
        } else if (entry.is_directory()) {
            found[path + "/"];
        } else {
            found[path] = contents(entry.path());
        }
    }
    return found;
}

}  // namespace bildkurier
