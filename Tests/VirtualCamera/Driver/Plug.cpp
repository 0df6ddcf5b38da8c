// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Plug.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <system_error>
#include <utility>

namespace bildkurier {

namespace fs = std::filesystem;

std::vector<Plug> Plug::all() {
    const char* bus = std::getenv("VIRTUAL_CAMERAS");
    std::vector<fs::path> folders;
    std::error_code error;
    if (bus != nullptr) {
        for (fs::directory_iterator entry(bus, error), end; !error && entry != end;
             entry.increment(error)) {
            folders.push_back(entry->path());
        }
    }
    std::ranges::sort(folders);
    std::vector<Plug> plugs;
    for (const fs::path& folder : folders) {
        if (fs::exists(folder / "virtual-camera", error)) plugs.emplace_back(folder);
    }
    return plugs;
}

Plug::Plug(fs::path folder)
    : folder_(std::move(folder)), settingsFile_(folder_ / "virtual-camera") {
    std::ifstream file(settingsFile_);
    for (std::string line; std::getline(file, line);) {
        const std::size_t equals = line.find('=');
        if (equals != std::string::npos)
            settings_[line.substr(0, equals)] = line.substr(equals + 1);
    }
}

std::string Plug::attribute(const char* name) const {
    std::string value;
    std::ifstream(folder_ / name) >> value;
    return value;
}

std::string Plug::port() const {
    const auto padded = [](const std::string& digits) {
        return std::string(3 - std::min<std::size_t>(3, digits.size()), '0') + digits;
    };
    return padded(attribute("busnum")) + "," + padded(attribute("devnum"));
}

int Plug::vendor() const {
    return static_cast<int>(std::strtol(attribute("idVendor").c_str(), nullptr, 16));
}

int Plug::product() const {
    return static_cast<int>(std::strtol(attribute("idProduct").c_str(), nullptr, 16));
}

std::string Plug::text(const std::string& name) const {
    const auto found = settings_.find(name);
    return found == settings_.end() ? "" : found->second;
}

std::int64_t Plug::number(const std::string& name) const {
    const std::string value = text(name);
    return value.empty() ? -1 : std::strtoll(value.c_str(), nullptr, 10);
}

bool Plug::isIn() const {
    std::error_code error;
    return fs::exists(settingsFile_, error);
}

void Plug::pull() const {
    std::error_code error;
    const fs::path drawer = folder_.parent_path().parent_path() / "drawer";
    fs::create_directories(drawer, error);
    fs::rename(folder_, drawer / folder_.filename(), error);
}

fs::path Plug::counter(const std::string& what) const { return folder_ / ("count-" + what); }

std::int64_t Plug::counted(const std::string& what) const {
    std::error_code error;
    const auto bytes = fs::file_size(counter(what), error);
    return error ? 0 : static_cast<std::int64_t>(bytes);
}

void Plug::count(const std::string& what) const {
    std::ofstream(counter(what), std::ios::app) << '.';
}

}  // namespace bildkurier
