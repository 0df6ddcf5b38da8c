// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardVolumes.h"

#include <gtest/gtest.h>

#include <string>

namespace bildkurier {
namespace {

Mount mount(std::uint64_t device, std::string point, std::string source = "/dev/sdb1",
            std::string type = "vfat") {
    return {.id = static_cast<int>(device),
            .device = device,
            .root = "/",
            .point = std::move(point),
            .options = "rw",
            .type = std::move(type),
            .source = std::move(source)};
}

std::vector<std::string> points(std::vector<Mount> table) {
    table.insert(table.begin(), mount(1, "/", "/dev/sda1", "ext4"));
    std::vector<std::string> all;
    for (const Mount& each : cardVolumes(table)) all.push_back(each.point);
    return all;
}

using Points = std::vector<std::string>;

TEST(CardVolumes, AreThoseThatWereMountedForTheUser) {
    for (const char* point :
         {"/media/anna/EOS_DIGITAL", "/run/media/anna/NIKON", "/mnt", "/mnt/karte", "/media/karte",
          "/home/anna/karte", "/tmp/karte", "/Volumes/KARTE", "/usrlocal", "/bootstick"})
        EXPECT_EQ(points({mount(2, point)}), Points{point});
}

TEST(CardVolumes, AreNoPartOfTheSystem) {
    for (const char* point :
         {"/boot", "/boot/efi", "/efi", "/home", "/home/anna", "/usr", "/usr/local", "/var",
          "/var/lib/docker", "/snap/core/1", "/opt", "/srv", "/root", "/tmp", "/run", "/etc/hosts",
          "/nix/store", "/sysroot"})
        EXPECT_EQ(points({mount(2, point)}), Points{}) << point;
}

TEST(CardVolumes, AreNotOnADeviceOfTheSystem) {
    EXPECT_EQ(points({mount(1, "/mnt/same", "/dev/sda1", "ext4")}), Points{});
    EXPECT_EQ(points({mount(2, "/mnt/home", "/dev/sda2"), mount(2, "/home", "/dev/sda2"),
                      mount(3, "/mnt/card")}),
              Points{"/mnt/card"});
}

TEST(CardVolumes, AreOnADeviceOfThisComputer) {
    EXPECT_EQ(
        points(
            {mount(2, "/mnt/a", "tmpfs", "tmpfs"), mount(3, "/mnt/b", "server:/share", "nfs4"),
             mount(4, "/mnt/c", "//server/share", "cifs"),
             mount(5, "/mnt/d", "anna@server:", "fuse.sshfs"),
             mount(6, "/mnt/e", "/dev/fuse", "fuse.portal"),
             mount(7, "/mnt/f", "overlay", "overlay"), mount(8, "/mnt/g", "/dev/mapper/x", "nfs"),
             mount(9, "/mnt/h", "/dev/loop0", "ext4"), mount(10, "/mnt/i", "/dev/sdb1", "fuseblk"),
             mount(11, "/mnt/j", "/dev/mmcblk0p1", "exfat")}),
        (Points{"/mnt/h", "/mnt/i", "/mnt/j"}));
}

TEST(CardVolumes, CanBeSeen) {
    EXPECT_EQ(points({mount(2, "/mnt/a"), mount(3, "/mnt/a", "tmpfs", "tmpfs")}), Points{});
    const std::vector<Mount> twice{mount(2, "/mnt/a"), mount(3, "/mnt/a", "/dev/sdc1")};
    EXPECT_EQ(cardVolumes(twice), std::vector{twice[1]});
}

TEST(CardVolumes, AreInTheOrderOfTheTable) {
    EXPECT_EQ(points({mount(3, "/mnt/b"), mount(2, "/mnt/a"), mount(3, "/mnt/c")}),
              (Points{"/mnt/b", "/mnt/a", "/mnt/c"}));
}

}  // namespace
}  // namespace bildkurier
