// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SampleCard.h"

#include <fmt/core.h>

#include <cstdio>
#include <exception>
#include <filesystem>

/// Writes a sample memory card: bildkurier-sample-card DIR
int main(int count, char** arguments) {
    if (count != 2 || *arguments[1] == '-') {
        fmt::print(stderr, "Aufruf: bildkurier-sample-card ORDNER\n");
        return 2;
    }
    try {
        const std::filesystem::path root = arguments[1];
        if (std::filesystem::exists(root) && !std::filesystem::is_empty(root)) {
            fmt::print(stderr, "Der Ordner ist nicht leer: {}\n", root.string());
            return 2;
        }
        bildkurier::SampleCard(root).write();
    } catch (const std::exception& error) {
        fmt::print(stderr, "Die Musterkarte lässt sich nicht schreiben: {}\n", error.what());
        return 1;
    }
}
