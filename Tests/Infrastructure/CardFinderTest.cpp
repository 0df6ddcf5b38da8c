// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardFinder.h"
#include "MountedVolume.h"
#include "TemporaryFolder.h"
#include "TemporaryVolume.h"

#include <gtest/gtest.h>
#include <sys/mount.h>

#include <array>
#include <filesystem>
#include <span>

namespace bildkurier {
namespace {

namespace fs = std::filesystem;

using Names = std::vector<std::string>;

Instant at(double seconds) { return Instant(Duration(seconds)); }

/// Mounts are made up; what is mounted there are ordinary folders.
class CardFinderTest : public testing::Test {
protected:
    TemporaryFolder media;
    std::vector<Mount> table;

    Mount mount(int device, const std::string& name) const {
        return {.id = device,
                .device = static_cast<std::uint64_t>(device),
                .root = "/",
                .point = real(name),
                .options = "rw",
                .type = "vfat",
                .source = "/dev/bildkurier-test" + std::to_string(device)};
    }
    Mount card(int device, const std::string& name) const {
        media.makeFolder(name + "/DCIM");
        return mount(device, name);
    }
    std::string real(const std::string& name) const {
        return fs::weakly_canonical(media.path(name)).string();
    }

    static Names names(const std::vector<CardFinder::Place>& places) {
        Names all;
        for (const auto& place : places) all.push_back(place->facts.name.value_or("none"));
        return all;
    }
    static CardFinder finder(Names folders, bool volumes = true) {
        return CardFinder({.folders = std::move(folders), .volumes = volumes});
    }
};

TEST_F(CardFinderTest, FindsTheVolumesWithACamerasFolders) {
    media.makeFolder("STICK/Dokumente");
    table = {card(3, "EOS"), mount(2, "STICK"), card(1, "NIKON")};
    auto cards = finder({});
    const auto [gone, come] = cards.look(table, at(0));
    EXPECT_TRUE(gone.empty());
    ASSERT_EQ(names(come), (Names{"EOS", "NIKON"}));
    EXPECT_EQ(come[0]->root, real("EOS"));
    EXPECT_EQ(come[0]->mount, table[0]);
    EXPECT_TRUE(cards.look(table, at(1)).come.empty());
}

TEST_F(CardFinderTest, KnowsNoIdentityOfAVolumeThatTellsNone) {
    table = {card(1, "EOS")};
    const auto come = finder({}).look(table, at(0)).come;
    ASSERT_EQ(come.size(), 1U);
    EXPECT_EQ(come[0]->facts.serial, std::nullopt);
    EXPECT_EQ(come[0]->facts.persistentId, std::nullopt);
    EXPECT_EQ(come[0]->facts.uuid, std::nullopt);
}

TEST_F(CardFinderTest, LooksAgainHalfASecondAfterAVolumeWasMounted) {
    media.makeFolder("EOS");
    table = {mount(1, "EOS")};
    auto cards = finder({});
    EXPECT_TRUE(cards.look(table, at(10)).come.empty());
    EXPECT_EQ(cards.nextLook(), at(10.5));
    media.makeFolder("EOS/DCIM");
    EXPECT_TRUE(cards.look(table, at(10.4)).come.empty());
    EXPECT_EQ(cards.nextLook(), at(10.5));
    EXPECT_EQ(names(cards.look(table, at(10.5)).come), Names{"EOS"});
    EXPECT_EQ(cards.nextLook(), std::nullopt);
}

TEST_F(CardFinderTest, LooksAgainOnlyOnce) {
    media.makeFolder("STICK");
    table = {mount(1, "STICK")};
    auto cards = finder({});
    cards.look(table, at(0));
    EXPECT_TRUE(cards.look(table, at(0.5)).come.empty());
    EXPECT_EQ(cards.nextLook(), std::nullopt);
    media.makeFolder("STICK/DCIM");
    EXPECT_TRUE(cards.look(table, at(1)).come.empty());
}

TEST_F(CardFinderTest, LooksAgainAtTheVolumeThatIsDueFirst) {
    media.makeFolder("A");
    media.makeFolder("B");
    table = {mount(1, "A")};
    auto cards = finder({});
    cards.look(table, at(0));
    table.push_back(mount(2, "B"));
    cards.look(table, at(0.2));
    EXPECT_EQ(cards.nextLook(), at(0.5));
    cards.look(table, at(0.5));
    EXPECT_EQ(cards.nextLook(), at(0.7));
}

TEST_F(CardFinderTest, HasNothingToLookForAgainAtACard) {
    table = {card(1, "EOS")};
    auto cards = finder({});
    cards.look(table, at(0));
    EXPECT_EQ(cards.nextLook(), std::nullopt);
}

TEST_F(CardFinderTest, LooksEverySecondForAGivenFolderThatIsAbsentOrEmpty) {
    media.makeFolder("a");
    media.makeFolder("EOS");
    table = {mount(1, "EOS")};
    auto cards = finder({real("a")});
    EXPECT_EQ(cards.nextLook(), std::nullopt);
    const auto first = cards.look(table, at(10)).come;
    ASSERT_EQ(names(first), Names{"a"});
    EXPECT_EQ(cards.nextLook(), at(10.5)) << "because of the volume";
    cards.look(table, at(10.5));
    EXPECT_EQ(cards.nextLook(), at(11.5));
    EXPECT_FALSE(first[0]->facts.isComplete) << "a card may be mounted there";
    media.write("a/IMG_1.JPG", "picture");
    const auto [gone, filled] = cards.look(table, at(11.5));
    EXPECT_EQ(gone, first);
    ASSERT_EQ(names(filled), Names{"a"});
    EXPECT_TRUE(filled[0]->facts.isComplete);
    EXPECT_EQ(cards.nextLook(), std::nullopt);

    fs::rename(media.path("a"), media.path("b"));
    EXPECT_EQ(cards.look(table, at(20)).gone, filled);
    EXPECT_EQ(cards.nextLook(), at(21));
    fs::rename(media.path("b"), media.path("a"));
    const auto again = cards.look(table, at(21)).come;
    ASSERT_EQ(names(again), Names{"a"});
    EXPECT_EQ(cards.nextLook(), std::nullopt);
    EXPECT_EQ(again[0]->facts.persistentId, first[0]->facts.persistentId);
}

TEST_F(CardFinderTest, ReportsAVolumeThatWasUnmounted) {
    table = {card(1, "EOS"), card(2, "NIKON")};
    auto cards = finder({});
    const auto come = cards.look(table, at(0)).come;
    table.erase(table.begin());
    const auto changes = cards.look(table, at(1));
    EXPECT_EQ(changes.gone, std::vector{come[0]});
    EXPECT_TRUE(changes.come.empty());
    EXPECT_TRUE(cards.look(table, at(2)).gone.empty());
}

TEST_F(CardFinderTest, TellsAnotherCardFromTheOneWhoseMountNumberItHas) {
    table = {card(1, "EOS")};
    auto cards = finder({});
    const auto come = cards.look(table, at(0)).come;
    table[0].device = 2;
    const auto changes = cards.look(table, at(1));
    EXPECT_EQ(changes.gone, come);
    EXPECT_EQ(names(changes.come), Names{"EOS"});
    EXPECT_NE(changes.come, come);
}

TEST_F(CardFinderTest, TellsAnotherCardFromTheOneThatWasMountedThereBefore) {
    const TemporaryVolume volume(1'000'000);
    if (!volume.isMounted()) GTEST_SKIP() << "cannot mount a volume here";
    if (!mountNumber(volume.path())) GTEST_SKIP() << "the kernel has no lasting numbers of mounts";
    const std::string folders = volume.path() + "/DCIM";
    fs::create_directory(folders);
    table = {mount(1, "EOS")};
    table[0].point = volume.path();
    auto found = finder({});
    auto whole = finder({volume.path()}, false);
    auto part = finder({folders}, false);
    const std::array cards{&found, &whole, &part};
    std::vector<std::vector<CardFinder::Place>> first;
    for (CardFinder* each : cards) {
        first.push_back(each->look(table, at(0)).come);
        ASSERT_EQ(first.back().size(), 1U);
        EXPECT_TRUE(each->look(table, at(1)).gone.empty());
    }
    ASSERT_EQ(::umount(volume.path().c_str()), 0);
    ASSERT_EQ(::mount("tmpfs", volume.path().c_str(), "tmpfs", 0, ""), 0);
    fs::create_directory(folders);
    for (std::size_t i = 0; i < cards.size(); ++i) {
        const auto changes = cards[i]->look(table, at(2));
        EXPECT_EQ(changes.gone, first[i]) << i;
        ASSERT_EQ(changes.come.size(), 1U) << i;
        EXPECT_NE(changes.come, first[i]) << i;
    }
}

TEST_F(CardFinderTest, KeepsACardWhoseMountOptionsChange) {
    table = {card(1, "EOS")};
    auto cards = finder({real("EOS/DCIM")});
    cards.look(table, at(0));
    table[0].options = "ro";
    const auto changes = cards.look(table, at(1));
    EXPECT_TRUE(changes.gone.empty());
    EXPECT_TRUE(changes.come.empty());
}

TEST_F(CardFinderTest, TakesADeviceMountedTwiceForOneCamera) {
    table = {card(1, "EOS"), card(1, "EOS-2")};
    auto cards = finder({});
    const auto first = cards.look(table, at(0)).come;
    EXPECT_EQ(names(first), Names{"EOS"});
    table.erase(table.begin());
    const auto changes = cards.look(table, at(1));
    EXPECT_EQ(changes.gone, first);
    EXPECT_EQ(names(changes.come), Names{"EOS-2"});
}

TEST_F(CardFinderTest, LooksAtNoVolumeUnlessItMay) {
    table = {card(1, "EOS"), mount(2, "STICK")};
    auto cards = finder({}, false);
    EXPECT_TRUE(cards.look(table, at(0)).come.empty());
    EXPECT_EQ(cards.nextLook(), std::nullopt);
}

TEST_F(CardFinderTest, ReportsFoldersGivenInTheirOrderBeforeVolumes) {
    media.makeFolder("Zuhause/b");
    media.makeFolder("Zuhause/a");
    table = {card(1, "EOS")};
    auto cards = finder({media.path("Zuhause/b/"), media.path("fehlt"), media.path("Zuhause/./a")});
    const auto come = cards.look(table, at(0)).come;
    ASSERT_EQ(names(come), (Names{"b", "a", "EOS"}));
    EXPECT_EQ(come[0]->root, real("Zuhause/b"));
    EXPECT_EQ(come[1]->root, real("Zuhause/a"));
}

TEST_F(CardFinderTest, KnowsAFolderByItsVolumeAndPath) {
    media.makeFolder("EOS/DCIM");
    table = {mount(1, "EOS")};
    const auto come = finder({media.path("EOS/DCIM")}, false).look(table, at(0)).come;
    ASSERT_EQ(come.size(), 1U);
    EXPECT_EQ(come[0]->facts.persistentId, "vfat:/dev/bildkurier-test1:/DCIM");
    EXPECT_EQ(come[0]->facts.serial, std::nullopt);
    EXPECT_EQ(come[0]->facts.uuid, std::nullopt);
    EXPECT_EQ(come[0]->mount, table[0]);
}

TEST_F(CardFinderTest, KnowsAFolderWhereverItsVolumeIsMounted) {
    media.makeFolder("A/DCIM/100");
    media.makeFolder("B/100");
    const auto identity = [&](const Mount& on, const std::string& folder) {
        const auto come = finder({media.path(folder)}, false).look(std::span(&on, 1), at(0)).come;
        return come.size() == 1 ? come[0]->facts.persistentId : "none";
    };
    Mount part = mount(1, "B");
    part.root = "/DCIM";
    Mount all = mount(1, "A");
    EXPECT_EQ(identity(all, "A"), "vfat:/dev/bildkurier-test1:/");
    EXPECT_EQ(identity(part, "B"), "vfat:/dev/bildkurier-test1:/DCIM");
    EXPECT_EQ(identity(all, "A/DCIM"), identity(part, "B"));
    EXPECT_EQ(identity(all, "A/DCIM/100"), identity(part, "B/100"));
    all.point = "/";
    EXPECT_EQ(identity(all, "A/DCIM"), "vfat:/dev/bildkurier-test1:" + real("A/DCIM"));
}

TEST_F(CardFinderTest, KnowsAFolderOnNoDeviceByItsPlace) {
    table = {card(1, "A"), card(2, "B")};
    for (Mount& mount : table) mount.type = mount.source = "tmpfs";
    const auto come =
        finder({media.path("A/DCIM"), media.path("B/DCIM")}, false).look(table, at(0)).come;
    ASSERT_EQ(come.size(), 2U);
    EXPECT_EQ(come[0]->facts.persistentId, "tmpfs:tmpfs:" + real("A") + ":/DCIM");
    EXPECT_EQ(come[1]->facts.persistentId, "tmpfs:tmpfs:" + real("B") + ":/DCIM");
}

TEST_F(CardFinderTest, ReportsAVolumeGivenByHandOnlyOnce) {
    table = {card(1, "EOS"), card(2, "NIKON")};
    auto cards = finder({media.path("EOS")});
    EXPECT_EQ(names(cards.look(table, at(0)).come), (Names{"EOS", "NIKON"}));
}

TEST_F(CardFinderTest, LetsAGivenFolderGoAndReturnWithItsVolume) {
    table = {card(1, "EOS")};
    auto cards = finder({media.path("EOS/DCIM")}, false);
    const auto first = cards.look(table, at(0)).come;
    ASSERT_EQ(first.size(), 1U);

    fs::rename(media.path("EOS"), media.path("weg"));
    EXPECT_EQ(cards.look({}, at(1)).gone, first);
    EXPECT_TRUE(cards.look({}, at(2)).gone.empty());

    fs::rename(media.path("weg"), media.path("EOS"));
    const auto second = cards.look(table, at(3));
    EXPECT_TRUE(second.gone.empty());
    ASSERT_EQ(names(second.come), Names{"DCIM"});
    EXPECT_NE(second.come, first);
    EXPECT_EQ(second.come[0]->facts.persistentId, first[0]->facts.persistentId);
}

TEST_F(CardFinderTest, TakesNoOtherVolumesFolderForTheGivenOne) {
    table = {card(1, "EOS")};
    media.write("EOS/DCIM/IMG_1.JPG", "picture");
    auto cards = finder({media.path("EOS/DCIM")}, false);
    const auto first = cards.look(table, at(0)).come;
    const auto other = cards.look(std::vector{mount(2, "EOS")}, at(1));
    EXPECT_EQ(other.gone, first);
    EXPECT_TRUE(other.come.empty());
    EXPECT_EQ(names(cards.look(table, at(2)).come), Names{"DCIM"});
}

TEST_F(CardFinderTest, TakesEveryCardThatIsMountedAtTheGivenPlace) {
    table = {card(1, "EOS")};
    auto cards = finder({media.path("EOS")}, false);
    const auto first = cards.look(table, at(0)).come;
    ASSERT_EQ(names(first), Names{"EOS"});
    const auto [gone, come] = cards.look(std::vector{mount(2, "EOS")}, at(1));
    EXPECT_EQ(gone, first);
    ASSERT_EQ(names(come), Names{"EOS"});
    EXPECT_EQ(come[0]->facts.persistentId, "vfat:/dev/bildkurier-test2:/");
    EXPECT_TRUE(come[0]->facts.isComplete);
    EXPECT_EQ(cards.look({}, at(2)).gone, come);
    EXPECT_EQ(names(cards.look(table, at(3)).come), Names{"EOS"});
}

TEST_F(CardFinderTest, TakesTheGivenFolderAgainOnceACardIsNoLongerMountedOverIt) {
    media.write("EOS/IMG_1.JPG", "picture");
    auto cards = finder({media.path("EOS")}, false);
    const auto first = cards.look({}, at(0)).come;
    ASSERT_EQ(names(first), Names{"EOS"});
    const auto over = cards.look(std::vector{mount(2, "EOS")}, at(1));
    EXPECT_EQ(over.gone, first);
    ASSERT_EQ(names(over.come), Names{"EOS"});
    const auto [gone, come] = cards.look({}, at(2));
    EXPECT_EQ(gone, over.come);
    ASSERT_EQ(names(come), Names{"EOS"});
    EXPECT_EQ(come[0]->facts.persistentId, first[0]->facts.persistentId);
}

TEST_F(CardFinderTest, KnowsWhatMountsByItselfByWhatIsMountedThen) {
    Mount waiting = card(1, "EOS");
    waiting.type = "autofs";
    media.write("EOS/IMG_1.JPG", "picture");
    auto cards = finder({media.path("EOS")}, false);
    const auto come = cards.look(std::vector{waiting}, at(0)).come;
    ASSERT_EQ(names(come), Names{"EOS"});
    EXPECT_NE(come[0]->mount.type, "autofs");
}

TEST_F(CardFinderTest, TakesWhatIsMountedOverAnEmptyFolderForTheGivenOne) {
    media.makeFolder("EOS");
    auto cards = finder({media.path("EOS")}, false);
    const auto empty = cards.look({}, at(0)).come;
    ASSERT_EQ(names(empty), Names{"EOS"});

    table = {card(1, "EOS")};
    EXPECT_FALSE(empty[0]->facts.isComplete);
    // A mount that comes while one looks is seen half.
    const auto half = cards.look(table, at(1));
    EXPECT_EQ(half.gone, empty);
    EXPECT_TRUE(half.come.empty());
    const auto come = cards.look(table, at(2)).come;
    ASSERT_EQ(names(come), Names{"EOS"});
    EXPECT_EQ(come[0]->facts.persistentId, "vfat:/dev/bildkurier-test1:/");
    EXPECT_TRUE(come[0]->facts.isComplete);

    const auto pulled = cards.look({}, at(2.5));
    EXPECT_EQ(pulled.gone, come);
    EXPECT_TRUE(pulled.come.empty());
    EXPECT_EQ(names(cards.look(table, at(3)).come), Names{"EOS"});
}

TEST_F(CardFinderTest, NoticesAnotherFolderInPlaceOfTheGivenOne) {
    table = {card(1, "EOS")};
    table[0].type = "ext4";
    auto cards = finder({media.path("EOS/DCIM")}, false);
    const auto first = cards.look(table, at(0)).come;
    fs::rename(media.path("EOS/DCIM"), media.path("EOS/alt"));
    media.makeFolder("EOS/DCIM");
    const auto changes = cards.look(table, at(1));
    EXPECT_EQ(changes.gone, first);
    EXPECT_EQ(names(changes.come), Names{"DCIM"});
}

TEST_F(CardFinderTest, CountsOnNoFileNumbersWhereTheyChange) {
    for (const char* type : {"vfat", "msdos", "exfat", "fuseblk"}) {
        table = {card(1, "EOS")};
        table[0].type = type;
        auto cards = finder({media.path("EOS/DCIM")}, false);
        cards.look(table, at(0));
        fs::rename(media.path("EOS/DCIM"), media.path("EOS/alt"));
        media.makeFolder("EOS/DCIM");
        const auto changes = cards.look(table, at(1));
        EXPECT_TRUE(changes.gone.empty()) << type;
        EXPECT_TRUE(changes.come.empty()) << type;
        fs::remove_all(media.path("EOS"));
    }
}

TEST_F(CardFinderTest, ReportsAGivenFolderWhenItAppears) {
    auto cards = finder({media.path("EOS/DCIM")}, false);
    EXPECT_TRUE(cards.look(table, at(0)).come.empty());
    table = {card(1, "EOS")};
    EXPECT_EQ(names(cards.look(table, at(1)).come), Names{"DCIM"});
}

TEST_F(CardFinderTest, TakesNoFileForAFolder) {
    const std::string file = media.write("Datei", "");
    EXPECT_TRUE(finder({file, ""}, false).look(table, at(0)).come.empty());
}

}  // namespace
}  // namespace bildkurier
