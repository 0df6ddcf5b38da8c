// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ProgramTest.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

void setTaken(const std::string& path, int minute) {
    const std::chrono::sys_days day(std::chrono::year(2024) / 7 / 1);
    const auto taken = day + std::chrono::seconds(10 * 3600 + minute * 60);
    fs::last_write_time(path, std::chrono::file_clock::from_sys(taken));
}

std::string bytesOf(const std::string& name, std::size_t size) {
    std::minstd_rand random(static_cast<unsigned>(std::hash<std::string>()(name)));
    std::string bytes(size, '\0');
    std::ranges::generate(bytes, [&random] { return static_cast<char>(random() >> 8U); });
    return bytes;
}

}  // namespace

void ProgramTest::needFaults() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "nothing can be preloaded into a program with a sanitizer";
#endif
}

void ProgramTest::add(const std::string& name, std::string_view contents, int minute) const {
    fs::create_directories(fs::path(picture(name)).parent_path());
    std::ofstream(picture(name), std::ios::binary) << contents;
    setTaken(picture(name), minute);
}

void ProgramTest::addLarge(const std::string& name, std::size_t size, int minute) const {
    add(name, bytesOf(name, size), minute);
}

void ProgramTest::addHollow(const std::string& name, std::size_t size, int minute) const {
    addLarge(name, 5'000, minute);
    fs::resize_file(picture(name), size);
    setTaken(picture(name), minute);
}

std::string ProgramTest::picture(const std::string& name) const {
    return card + "/DCIM/100BILDK/" + name;
}

ProgramCall ProgramTest::call(const Strings& arguments, const Environment& environment,
                              const TemporaryFolder& user) {
    Environment all = environment;
    all.insert({{"TZ", "Europe/Berlin"},
                {"LC_ALL", "de_DE.UTF-8"},
                {"XDG_RUNTIME_DIR", user.makeFolder("runtime")},
                {"XDG_CACHE_HOME", user.path("cache")},
                {"XDG_CONFIG_HOME", user.makeFolder("config")}});
    return {.path = BILDKURIER_CLI, .arguments = arguments, .environment = all};
}

ProgramResult ProgramTest::run(const Strings& arguments, const Environment& environment) {
    return call(arguments, environment, TemporaryFolder()).run();
}

ProgramResult ProgramTest::import(const Strings& options, const Environment& environment) const {
    Strings arguments{"import", "--card", card, "--to", destination};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return run(arguments, environment);
}

Environment ProgramTest::watching(const std::string& root, const std::string& log) {
    return {{"LD_PRELOAD", FAULTS_LIBRARY}, {"FAULTS_ROOT", root}, {"FAULTS_LOG", log}};
}

std::vector<LoggedCall> ProgramTest::callsOfImport() const {
    const std::string log = folder.path("calls.log");
    fs::remove(log);
    const auto result = import({}, watching(destination, log));
    EXPECT_EQ(result.exitStatus, 0) << result.err;
    return readCallLog(log);
}

Tree visibleFiles(const Tree& tree) {
    Tree files;
    for (const auto& [path, bytes] : tree) {
        const bool hidden = path.starts_with('.') || path.find("/.") != std::string::npos;
        if (hidden || path.ends_with('/')) continue;
        const bool isNew = files.emplace(path.substr(path.rfind('/') + 1), bytes).second;
        EXPECT_TRUE(isNew) << path << " is there twice";
    }
    return files;
}

bool hasHidden(const Tree& tree) {
    return std::ranges::any_of(tree, [](const auto& entry) {
        return entry.first.starts_with('.') || entry.first.find("/.") != std::string::npos;
    });
}

}  // namespace bildkurier
