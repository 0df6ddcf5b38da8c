// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbCamerasTest.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <random>

namespace bildkurier {
namespace {

/// A camera that does not answer what it is asked about some of its files and folders, which
/// libgphoto2 likes to pass over.
class ShortListingTest : public UsbCamerasTest {
protected:
    using Sizes = std::map<std::string, std::int64_t>;

    ShortListingTest() {
        fillCard("first", 1);
        fillCard("second", 4);
        device.settings = {{"store1", folder.path("first")}, {"store2", folder.path("second")}};
    }

    void fillCard(const std::string& card, int from) {
        for (int number = from; number < from + 3; ++number) {
            const std::string place = fmt::format("DCIM/10{}TEST", number);
            names.push_back(fmt::format("10{}TEST", number));
            for (int file = 0; file < 4; ++file) {
                const std::string name = fmt::format("IMG_{}{}.JPG", number, file);
                const int size = 10 * number + file;
                folder.write(card + "/" + place + "/" + name,
                             std::string(static_cast<std::size_t>(size), 'x'));
                whole[name] = size;
                names.push_back(name);
            }
        }
    }

    /// What the camera lists, and apart from that, what it names as unreadable.
    void list() {
        usb.plugIn("1-1", device);
        start();
        sortFiles();
        cameras.reset();
        sink->added.clear();
        usb.unplugForGood("1-1");
    }

    /// Of the camera that was found last.
    void sortFiles() {
        listed.clear();
        unreadable.clear();
        for (const auto& file : files()) {
            const auto facts = file->facts();
            if (facts.size != 0) {
                EXPECT_TRUE(listed.emplace(*facts.name, facts.size).second) << *facts.name;
            } else {
                unreadable.push_back(*facts.name);
            }
        }
    }

    void setFaults(const std::string& name, const std::string& code, const std::string& times) {
        device.settings["fault_of " + name] = code;
        device.settings["faults_of"] = times;
    }

    /// Whether nothing is missing without a word, and nothing is taken for another.
    bool isWholeOrTold() const {
        const bool areRight = std::ranges::all_of(listed, [this](const auto& file) {
            return whole.contains(file.first) && whole.at(file.first) == file.second;
        });
        return areRight && (listed == whole || !unreadable.empty());
    }

    Sizes without(const std::string& name) const {
        Sizes rest = whole;
        rest.erase(name);
        return rest;
    }

    Sizes whole;
    std::vector<std::string> names;  ///< of files and folders
    Sizes listed;
    Events unreadable;
};

/// The library's errors that mean a disturbed cable, and the protocol's codes for an invalid
/// object handle, a busy device, a store that is not available and a general error.
constexpr const char* faults[] = {"-7", "-34", "-10", "8201", "8217", "8211", "8194"};
constexpr auto everyTime = "-1";

TEST_F(ShortListingTest, ListsEverythingOrTellsWhatIsMissing) {
    for (const char* name : {"IMG_11.JPG", "IMG_63.JPG", "101TEST", "DCIM", "first", "second"}) {
        for (const char* fault : faults) {
            for (const char* times : {"1", "2", everyTime}) {
                SCOPED_TRACE(fmt::format("{} of {}, {} times", fault, name, times));
                const auto settings = device.settings;
                setFaults(name, fault, times);
                list();
                EXPECT_TRUE(isWholeOrTold());
                device.settings = settings;
            }
        }
    }
}

TEST_F(ShortListingTest, ListsWhatIsAnsweredInTheEnd) {
    for (const char* name : {"IMG_11.JPG", "101TEST", "DCIM", "second"}) {
        for (const char* fault : {"-7", "8194"}) {
            SCOPED_TRACE(fmt::format("{} of {}", fault, name));
            const auto settings = device.settings;
            setFaults(name, fault, "2");
            list();
            EXPECT_EQ(listed, whole) << testing::PrintToString(unreadable);
            EXPECT_EQ(unreadable, Events());
            device.settings = settings;
        }
    }
}

TEST_F(ShortListingTest, TellsOfAFolderWithAFileThatIsNeverDescribed) {
    setFaults("IMG_11.JPG", "-7", everyTime);
    list();
    for (int file = 0; file < 4; ++file) whole.erase(fmt::format("IMG_1{}.JPG", file));
    EXPECT_EQ(listed, whole);
    EXPECT_EQ(unreadable, Events{"101TEST"});
}

TEST_F(ShortListingTest, TellsOfACardThatIsNeverListed) {
    device.settings["extension"] = "17";  // Sony's are not asked for all cards at once.
    setFaults("second", "8211", everyTime);
    list();
    EXPECT_EQ(listed.size(), whole.size() / 2);
    EXPECT_EQ(unreadable, Events{"Speicherkarte"});
}

TEST_F(ShortListingTest, ListsWhatStandsBesideAnInvalidFile) {
    setFaults("IMG_11.JPG", "8201", everyTime);
    list();
    EXPECT_EQ(listed, without("IMG_11.JPG"));
    EXPECT_EQ(unreadable, Events{"101TEST"});
}

TEST_F(ShortListingTest, TellsOfFilesThatAreCalledTheSame) {
    device.settings["called IMG_11.JPG"] = "IMG_12.JPG";
    list();
    EXPECT_EQ(listed.size(), whole.size() - 1);
    EXPECT_EQ(unreadable, Events{"101TEST"});
}

TEST_F(ShortListingTest, ListsFurtherFoldersAfterSomeThatAlwaysLackAFile) {
    for (int number = 1; number <= 3; ++number)
        device.settings[fmt::format("called IMG_{}1.JPG", number)] =
            fmt::format("IMG_{}2.JPG", number);
    list();
    EXPECT_EQ(listed.size(), whole.size() - 3);
    EXPECT_EQ(unreadable, (Events{"101TEST", "102TEST", "103TEST"}));
}

TEST_F(ShortListingTest, TellsOfNamesThatAreNone) {
    const struct {
        const char* name;
        const char* called;
        std::size_t lacks;
    } cases[] = {{"IMG_11.JPG", "IMG/11.JPG", 1}, {"101TEST", "101/TEST", 4}};
    for (const auto& [name, called, lacks] : cases) {
        SCOPED_TRACE(called);
        const auto settings = device.settings;
        device.settings[std::string("called ") + name] = called;
        list();
        EXPECT_TRUE(isWholeOrTold());
        EXPECT_GE(listed.size(), whole.size() - lacks);
        device.settings = settings;
    }
}

TEST_F(ShortListingTest, IsNeverSilentWhileAnotherCameraIsBusy) {
    timing.answer = Milliseconds(100);
    VirtualBus::Device other{.serial = "S2002",
                             .settings = {{"store1", folder.path("card")}, {"rate", "40000"}}};
    usb.plugIn("1-2", other);
    start();
    const auto found = files();
    download(*found.at(0), target);
    runUntil([this] {
        return std::filesystem::exists(target + "/copy") &&
               std::filesystem::file_size(target + "/copy") > 0;
    });
    setFaults("IMG_11.JPG", "8201", everyTime);
    usb.plugIn("1-1", device);
    runUntil([this] { return sink->added.size() == 2; });
    sortFiles();
    EXPECT_EQ(answered(), Events());
    EXPECT_EQ(listed, without("IMG_11.JPG"));
    EXPECT_TRUE(isWholeOrTold());
    EXPECT_EQ(usb.count("1-1", "openings"), 1U) << "that would not help";
}

TEST_F(ShortListingTest, IsNeverSilentAboutRandomFaults) {
    std::mt19937 random(20'261);
    const auto below = [&random](std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
    };
    for (int i = 0; i < 25; ++i) {
        const auto settings = device.settings;
        std::string trace;
        for (std::size_t count = 1 + below(4); count > 0; --count) {
            const std::string& name = names[below(names.size())];
            const std::string fault = faults[below(std::size(faults))];
            setFaults(name, fault, std::to_string(1 + below(6)));
            trace += fmt::format("{} of {}, ", fault, name);
        }
        SCOPED_TRACE(trace + device.settings["faults_of"] + " times");
        list();
        EXPECT_TRUE(isWholeOrTold());
        device.settings = settings;
    }
}

}  // namespace
}  // namespace bildkurier
