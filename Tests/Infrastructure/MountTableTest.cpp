// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MountTable.h"
#include "TemporaryFolder.h"
#include "TemporaryVolume.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <filesystem>
#include <string>

namespace bildkurier {

TEST(MountTable, ReadsTheKernelsLines) {
    const struct {
        std::string line;
        Mount mount;
    } cases[] = {
        {"36 35 98:0 /mnt1 /mnt2 rw,noatime master:1 - ext3 /dev/root rw,errors=continue",
         {36, makedev(98, 0), "/mnt1", "/mnt2", "rw,noatime,rw,errors=continue", "ext3",
          "/dev/root"}},
        {"22 1 8:1 / / rw - ext4 /dev/sda1 rw",
         {22, makedev(8, 1), "/", "/", "rw,rw", "ext4", "/dev/sda1"}},
        {"99 22 0:44 / /mnt ro shared:1 master:2 propagate_from:3 unbindable - nfs4 nas:/fotos rw",
         {99, makedev(0, 44), "/", "/mnt", "ro,rw", "nfs4", "nas:/fotos"}},
        {R"(40 22 8:17 / /media/EOS\040DIGITAL\011\012\134 rw - vfat /dev/sdb1 rw)",
         {40, makedev(8, 17), "/", "/media/EOS DIGITAL\t\n\\", "rw,rw", "vfat", "/dev/sdb1"}},
        {R"(41 22 0:50 / /mnt/\303\274 rw - cifs //nas/my\040share rw,username=a\054b)",
         {41, makedev(0, 50), "/", "/mnt/ü", "rw,rw,username=a,b", "cifs", "//nas/my share"}},
        {R"(42 22 0:51 /a\04 /b\9 rw - fuse \ rw)",
         {42, makedev(0, 51), "/a\\04", "/b\\9", "rw,rw", "fuse", "\\"}},
        {"43 22 0:52 / /tmp rw - tmpfs  rw,size=1k",
         {43, makedev(0, 52), "/", "/tmp", "rw,rw,size=1k", "tmpfs", ""}},
        {"44 22 0:53 - /- rw - tmpfs - rw", {44, makedev(0, 53), "-", "/-", "rw,rw", "tmpfs", "-"}},
    };
    for (const auto& [line, mount] : cases) {
        EXPECT_EQ(parseMountTable(line), std::vector{mount}) << line;
        EXPECT_EQ(parseMountTable(line + "\n"), std::vector{mount}) << line;
    }
}

TEST(MountTable, LeavesOutLinesThatAreNotUnderstood) {
    const std::string good = "22 1 8:1 / / rw - ext4 /dev/sda1 rw\n";
    for (const std::string bad :
         {"", " ", "garbage", "22 1 8:1 / / rw", "22 1 8:1 / / rw shared:1 ext4 /dev/sda1 rw",
          "22 1 8:1 / / rw - ext4", "22 1 8:1 / / rw - ext4 /dev/sda1", "x 1 8:1 / / rw - a b c",
          "22x 1 8:1 / / rw - a b c", "22 1 81 / / rw - a b c", "22 1 8: / / rw - a b c",
          "22 1 :1 / / rw - a b c", "22 1 8:1x / / rw - a b c",
          "99999999999999999999 1 8:1 / / rw - a b c"}) {
        EXPECT_EQ(parseMountTable(bad).size(), 0) << bad;
        EXPECT_EQ(parseMountTable(std::string(good).append(bad).append("\n").append(good)).size(),
                  2)
            << bad;
    }
}

TEST(MountTable, TellsWhereAPathLiesInItsVolume) {
    const struct {
        std::string root;
        std::string point;
        std::string path;
        std::string inVolume;
    } cases[] = {
        {"/", "/", "/", "/"},
        {"/", "/", "/a/b", "/a/b"},
        {"/", "/media/EOS", "/media/EOS", "/"},
        {"/", "/media/EOS", "/media/EOS/DCIM", "/DCIM"},
        {"/DCIM", "/mnt", "/mnt", "/DCIM"},
        {"/DCIM", "/mnt", "/mnt/100", "/DCIM/100"},
        {"/@", "/", "/", "/@"},
        {"/@", "/", "/a", "/@/a"},
    };
    for (const auto& [root, point, path, inVolume] : cases) {
        const Mount mount{.root = root, .point = point};
        EXPECT_EQ(pathInVolume(mount, path), inVolume) << root << " " << point << " " << path;
    }
}

TEST(MountTable, KeepsTheOrderOfTheLines) {
    const auto mounts = parseMountTable(
        "3 1 8:1 / / rw - ext4 /dev/sda1 rw\n2 3 8:2 / /b rw - ext4 /dev/sda2 rw\n"
        "1 3 8:3 / /a rw - ext4 /dev/sda3 rw\n");
    ASSERT_EQ(mounts.size(), 3);
    EXPECT_EQ(mounts[0].id, 3);
    EXPECT_EQ(mounts[1].id, 2);
    EXPECT_EQ(mounts[2].id, 1);
}

TEST(MountTable, HoldsTheRootOfThisComputer) {
    const auto mounts = readMountTable();
    EXPECT_EQ(mountAbove(mounts, "/").value_or(Mount{}).point, "/");
}

TEST(MountTable, FindsTheMountAboveAPath) {
    const auto mounts = parseMountTable(
        "1 0 8:1 / / rw - ext4 root rw\n"
        "2 1 8:2 / /media/card rw - vfat covered rw\n"
        "3 1 8:3 / /media/card rw - vfat card rw\n"
        "4 3 8:4 / /media/card/DCIM rw - vfat inner rw\n"
        "5 1 8:5 / /media rw - tmpfs media rw\n");
    const struct {
        std::string path;
        std::string source;
    } cases[] = {
        {"/", "root"},
        {"/home", "root"},
        {"/media", "media"},
        {"/media/other", "media"},
        {"/mediatheque", "root"},
        {"/media/card", "card"},
        {"/media/cards", "media"},
        {"/media/card/MISC/a", "card"},
        {"/media/card/DCIM", "inner"},
        {"/media/card/DCIM/100CANON", "inner"},
    };
    for (const auto& [path, source] : cases) {
        EXPECT_EQ(mountAbove(mounts, path).value_or(Mount{}).source, source) << path;
    }
    EXPECT_FALSE(mountAbove(mounts, "relative"));
    EXPECT_FALSE(mountAbove({}, "/"));
}

TEST(MountTable, KnowsTheMountOfAPath) {
    const TemporaryFolder folder;
    for (const std::string& path : {folder.path(), folder.write("file", "x"), std::string("/")}) {
        struct stat facts{};
        ASSERT_EQ(::stat(path.c_str(), &facts), 0);
        const Mount mount = mountOf(path).value_or(Mount{});
        EXPECT_EQ(mount.device, facts.st_dev) << path;
        EXPECT_EQ(mount, mountAbove(readMountTable(), std::filesystem::canonical(path).string()));
    }
}

TEST(MountTable, FollowsLinksToTheirMount) {
    const TemporaryFolder folder;
    std::filesystem::create_symlink("/proc/self", folder.path("link"));
    const Mount mount = mountOf(folder.path("link")).value_or(Mount{});
    EXPECT_EQ(mount.point, "/proc");
    EXPECT_EQ(mount.type, "proc");
}

TEST(MountTable, KnowsNoMountWhereNothingIs) {
    const TemporaryFolder folder;
    std::filesystem::create_symlink("nowhere", folder.path("dangling"));
    EXPECT_FALSE(mountOf(folder.path("missing")));
    EXPECT_FALSE(mountOf(folder.path("dangling")));
    EXPECT_FALSE(mountOf(""));
}

TEST(MountTable, SeesAVolumeComeAndGo) {
    std::string path;
    {
        const TemporaryVolume volume(1'000'000);
        if (!volume.isMounted()) GTEST_SKIP() << "cannot mount a volume here";
        path = volume.path();
        const Mount mount = mountOf(volume.write("file", "x")).value_or(Mount{});
        EXPECT_EQ(mount.point, std::filesystem::canonical(path));
        EXPECT_EQ(mount.type, "tmpfs");
    }
    EXPECT_FALSE(mountOf(path));
}

TEST(MountTable, TellsFileSystemsOfOtherComputers) {
    for (const auto type : {"nfs",
                            "nfs4",
                            "cifs",
                            "smb3",
                            "smbfs",
                            "smb2",
                            "smb",
                            "sshfs",
                            "fuse.sshfs",
                            "9p",
                            "davfs",
                            "fuse.davfs2",
                            "fuse.webdavfs",
                            "fuse.rclone",
                            "fuse.gvfsd-fuse",
                            "fuse.kio-fuse",
                            "ceph",
                            "fuse.ceph-fuse",
                            "glusterfs",
                            "fuse.glusterfs",
                            "afs",
                            "lustre",
                            "fuse.curlftpfs",
                            "fuse.s3fs",
                            "ncpfs",
                            "coda",
                            "afpfs",
                            "fuse.smbnetfs",
                            "beegfs",
                            "virtiofs",
                            "vboxsf",
                            "fuse.vmhgfs-fuse",
                            "gpfs",
                            "orangefs",
                            "fuse.gcsfuse"})
        EXPECT_TRUE(isNetworkFileSystem(type)) << type;
    for (const auto type :
         {"ext4",       "ext3",           "xfs",        "btrfs",    "zfs",     "f2fs",
          "vfat",       "exfat",          "ntfs",       "ntfs3",    "fuseblk", "fuse.ntfs-3g",
          "fuse.exfat", "fuse.gocryptfs", "fuse.encfs", "hfsplus",  "apfs",    "iso9660",
          "udf",        "tmpfs",          "overlay",    "squashfs", "fuse",    "fuse.",
          "",           "nfsd",           "NFS",        "nfs5",     "xnfs"})
        EXPECT_FALSE(isNetworkFileSystem(type)) << type;
}

TEST(MountTable, KnowsWhereFilesGetOtherNumbers) {
    for (const auto type : {"vfat", "msdos", "exfat", "cifs", "smb3", "vboxsf", "fuse", "fuseblk",
                            "fuse.ntfs-3g", "fuse.sshfs"})
        EXPECT_TRUE(numbersFilesAnew(type)) << type;
    for (const auto type : {"ext4", "xfs", "btrfs", "ntfs3", "tmpfs", "nfs4", "iso9660", ""})
        EXPECT_FALSE(numbersFilesAnew(type)) << type;
}

TEST(MountTable, TellsAServerByItsUrlWhereTheTypeSaysNothing) {
    const auto mount = [](std::string type, std::string source) {
        return Mount{.type = std::move(type), .source = std::move(source)};
    };
    EXPECT_TRUE(isNetworkMount(mount("nfs4", "nas:/fotos")));
    EXPECT_TRUE(isNetworkMount(mount("fuse", "https://cloud.example/dav")));
    EXPECT_FALSE(isNetworkMount(mount("fuse", "archive")));
    EXPECT_FALSE(isNetworkMount(mount("ext4", "/dev/sda1")));
    EXPECT_FALSE(isNetworkMount(mount("ext4", "odd://name")));
}

TEST(MountTable, TellsWhatLiesInAFolderByWholeNames) {
    const struct {
        std::string path;
        std::string folder;
        bool inside;
    } cases[] = {
        {"/", "/", true},           {"/usr", "/", true},        {"/usr", "/usr", true},
        {"/usr/lib", "/usr", true}, {"/usrlib", "/usr", false}, {"/us", "/usr", false},
        {"/", "/usr", false},       {"", "/", false},
    };
    for (const auto& [path, folder, inside] : cases)
        EXPECT_EQ(liesIn(path, folder), inside) << path << " in " << folder;
}

}  // namespace bildkurier
