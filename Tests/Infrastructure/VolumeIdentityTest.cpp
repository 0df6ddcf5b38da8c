// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "TemporaryFolder.h"
#include "VolumeIdentity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace bildkurier {
namespace {

/// The beginning of a FAT16 volume as a camera formats it.
std::string fatVolume(std::string_view serial, std::string_view label) {
    constexpr std::size_t sector = 512;
    constexpr unsigned char head[] = {
        0xEB, 0x3C, 0x90, 'C',  'A',  'M',  'E',  'R',  'A', ' ', ' ',  // jump, maker
        0x00, 0x02,                                                     // bytes per sector
        0x04,                                                           // sectors per cluster
        0x01, 0x00,                                                     // reserved sectors
        0x02,                                                           // tables
        0x00, 0x02,                                      // entries of the root folder
        0x00, 0x50,                                      // sectors
        0xF8,                                            // a fixed disk
        0x14, 0x00,                                      // sectors per table
        0x3F, 0x00, 0xFF, 0x00, 0x00, 0x00, 0x00, 0x00,  // geometry, hidden sectors
        0x00, 0x00, 0x00, 0x00, 0x80, 0x00, 0x29};       // signature of what follows
    std::string volume(64 * sector, '\0');
    std::ranges::copy(head, volume.begin());
    volume.replace(39, 4, serial);
    volume.replace(43, 11, label);
    volume.replace(54, 8, "FAT16   ");
    volume.replace(510, 2, "\x55\xAA");
    constexpr std::size_t rootFolder = 41 * sector;
    volume.replace(rootFolder, 11, label);
    volume[rootFolder + 11] = 0x08;  // a label
    return volume;
}

class VolumeIdentityTest : public testing::Test {
protected:
    TemporaryFolder folder;

    VolumeIdentity identity(const std::string& volume) const {
        return volumeIdentity({.source = folder.write("volume", volume)});
    }
};

TEST_F(VolumeIdentityTest, AsksTheDeviceWhereNobodyElseKnows) {
    EXPECT_EQ(identity(fatVolume("\x78\x56\x34\x12", "EOS_DIGITAL")),
              (VolumeIdentity{.uuid = "1234-5678", .serial = "", .label = "EOS_DIGITAL"}));
}

TEST_F(VolumeIdentityTest, TakesZerosForNoIdentity) {
    EXPECT_EQ(identity(fatVolume(std::string_view("\0\0\0\0", 4), "EOS_DIGITAL")),
              (VolumeIdentity{.uuid = "", .serial = "", .label = "EOS_DIGITAL"}));
}

TEST_F(VolumeIdentityTest, KnowsNothingOfWhatIsNoVolume) {
    EXPECT_EQ(identity(""), VolumeIdentity{});
    EXPECT_EQ(identity(std::string(100'000, 'x')), VolumeIdentity{});
    EXPECT_EQ(volumeIdentity({.source = folder.path("missing")}), VolumeIdentity{});
    EXPECT_EQ(volumeIdentity({.source = folder.path()}), VolumeIdentity{});
    EXPECT_EQ(volumeIdentity({.source = "tmpfs"}), VolumeIdentity{});
    EXPECT_EQ(volumeIdentity({}), VolumeIdentity{});
}

}  // namespace
}  // namespace bildkurier
