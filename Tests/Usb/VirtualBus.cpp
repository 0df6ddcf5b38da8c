// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "VirtualBus.h"

#include <filesystem>
#include <fstream>

namespace bildkurier {

namespace fs = std::filesystem;

void VirtualBus::plugIn(const std::string& place, const Device& device) {
    const std::string folder = "drawer/" + place + "/";
    const std::map<std::string, std::string> attributes{{"busnum", "1"},
                                                        {"idVendor", device.vendor},
                                                        {"idProduct", device.product},
                                                        {"product", device.name},
                                                        {"serial", device.serial},
                                                        {place + ":1.0/bInterfaceClass", "06"},
                                                        {place + ":1.0/bInterfaceSubClass", "01"},
                                                        {place + ":1.0/bInterfaceProtocol", "01"}};
    for (const auto& [name, value] : attributes) folder_.write(folder + name, value + "\n");
    std::string lines;
    for (const auto& [name, value] : device.settings) lines += name + "=" + value + "\n";
    folder_.write(folder + "virtual-camera", lines);
    plugInAgain(place);
}

void VirtualBus::plugInAgain(const std::string& place) {
    folder_.write("drawer/" + place + "/devnum", std::to_string(++devices_) + "\n");
    fs::rename(inDrawer(place), onBus(place));
}

void VirtualBus::pull(const std::string& place) const {
    fs::create_directories(folder_.path("drawer"));
    fs::rename(onBus(place), inDrawer(place));
}

void VirtualBus::unplugForGood(const std::string& place) const {
    if (isPluggedIn(place)) pull(place);
    fs::remove_all(inDrawer(place));
}

bool VirtualBus::isPluggedIn(const std::string& place) const { return fs::exists(onBus(place)); }

void VirtualBus::change(const std::string& place,
                        const std::map<std::string, std::string>& settings) const {
    const std::string folder = isPluggedIn(place) ? onBus(place) : inDrawer(place);
    std::map<std::string, std::string> all;
    std::ifstream before(folder + "/virtual-camera");
    for (std::string name, value; std::getline(std::getline(before, name, '='), value);)
        all[name] = value;
    for (const auto& [name, value] : settings) all[name] = value;
    std::ofstream file(folder + "/virtual-camera");
    for (const auto& [name, value] : all) file << name << '=' << value << '\n';
}

std::size_t VirtualBus::count(const std::string& place, const std::string& what) const {
    const std::string folder = isPluggedIn(place) ? onBus(place) : inDrawer(place);
    const fs::path file = folder + "/count-" + what;
    return fs::exists(file) ? fs::file_size(file) : 0;
}

void VirtualBus::showToEverybody() const {
    fs::permissions(folder_.path(), fs::perms::others_read | fs::perms::others_exec,
                    fs::perm_options::add);
}

std::string VirtualBus::claimFile(const std::string& place) const {
    return onBus(place) + "/virtual-camera";
}

}  // namespace bildkurier
