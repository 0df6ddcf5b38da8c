// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "MountedVolume.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>

#include <functional>

namespace bildkurier {
namespace {

TEST(MountedVolume, IsTheSameUnlessSomethingThatIsKnownDiffers) {
    const MountedVolume first{.mount = {.id = 2,
                                        .device = 2,
                                        .root = "/",
                                        .point = "/mnt/a",
                                        .options = "rw",
                                        .type = "vfat",
                                        .source = "/dev/sdb1"},
                              .number = 7,
                              .identity = {.uuid = "ABCD-0123", .serial = "1", .label = "EOS"}};
    const struct {
        std::function<void(MountedVolume&)> change;
        bool isSame;
    } cases[] = {
        {[](auto&) {}, true},
        {[](auto& v) { v.mount.options = "ro"; }, true},
        {[](auto& v) { v.mount.id = 9; }, false},
        {[](auto& v) { v.mount.device = 3; }, false},
        {[](auto& v) { v.mount.point = "/mnt/b"; }, false},
        {[](auto& v) { v.mount.source = "/dev/sdc1"; }, false},
        {[](auto& v) { v.number = 8; }, false},
        {[](auto& v) { v.number.reset(); }, true},
        {[](auto& v) { v.identity.uuid = "ABCD-0124"; }, false},
        {[](auto& v) { v.identity = {}; }, true},
    };
    for (const auto& [change, isSame] : cases) {
        MountedVolume second = first;
        change(second);
        const auto number = &change - &cases[0].change;
        EXPECT_EQ(isSameVolume(first, second), isSame) << number;
        EXPECT_EQ(isSameVolume(second, first), isSame) << number;
    }
}

TEST(MountedVolume, HasNoNumberWhereNothingIs) {
    EXPECT_EQ(mountNumber(TemporaryFolder().path("fehlt")), std::nullopt);
}

}  // namespace
}  // namespace bildkurier
