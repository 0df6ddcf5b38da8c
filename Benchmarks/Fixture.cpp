// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Fixture.h"

#include <fmt/format.h>

#include <chrono>
#include <fstream>
#include <random>
#include <vector>

namespace bildkurier {

namespace fs = std::filesystem;

namespace {

void writeRandom(const fs::path& path, std::size_t size, std::mt19937_64& random) {
    std::vector<std::uint64_t> words(size / sizeof(std::uint64_t) + 1);
    for (auto& word : words) word = random();
    std::ofstream file(path, std::ios::binary);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    file.write(reinterpret_cast<const char*>(words.data()), static_cast<std::streamsize>(size));
}

void fill(const Fixture& fixture, const fs::path& root) {
    std::mt19937_64 random(fixture.files);
    const std::chrono::sys_seconds newYear(std::chrono::sys_days(std::chrono::year(2024) / 1 / 1));
    const auto firstMoment = std::chrono::file_clock::from_sys(newYear);
    const std::size_t perFolder = fixture.files / fixture.folders;
    for (std::size_t i = 0; i < fixture.files; ++i) {
        const fs::path folder = root / "DCIM" / fmt::format("{:03}BILDK", i / perFolder);
        if (i % perFolder == 0) fs::create_directories(folder);
        const fs::path path = folder / fmt::format("IMG_{:07}{}", i, fixture.suffix);
        if (fixture.sparse) {
            std::ofstream(path).close();
            fs::resize_file(path, fixture.size + i % 1000);
        } else {
            writeRandom(path, fixture.size, random);
        }
        fs::last_write_time(path, firstMoment + i * std::chrono::minutes(3));
    }
}

}  // namespace

fs::path benchFolder() { return fs::current_path() / "build" / "bench"; }

fs::path memoryFolder() { return "/dev/shm/bildkurier-bench"; }

fs::path made(const Fixture& fixture) {
    const fs::path root = benchFolder() / fixture.name;
    const fs::path complete = benchFolder() / (fixture.name + ".complete");
    if (!fs::exists(complete)) {
        fs::remove_all(root);
        fs::create_directories(root);
        fill(fixture, root);
        std::ofstream(complete).close();
    }
    return root;
}

}  // namespace bildkurier
