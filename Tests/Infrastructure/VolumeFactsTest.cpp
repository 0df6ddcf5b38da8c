// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "VolumeFacts.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

TEST(VolumeFacts, AreUuidElseSerialNumberAndLabelElseMountPoint) {
    using Label = std::optional<std::string>;
    const struct {
        VolumeIdentity volume;
        Label persistentId;
        Label serial;
        Label name;
    } cases[] = {
        {{.uuid = "AB-12", .serial = "77", .label = "EOS"}, "AB-12", {}, "EOS"},
        {{.uuid = "", .serial = "77", .label = ""}, {}, "77", "card"},
        {{.uuid = "", .serial = "", .label = "EOS"}, {}, {}, "EOS"},
    };
    for (const auto& [volume, persistentId, serial, name] : cases) {
        const DeviceFacts facts = volumeFacts(volume, "/media/card");
        EXPECT_EQ(facts.persistentId, persistentId);
        EXPECT_EQ(facts.serial, serial);
        EXPECT_EQ(facts.name, name);
        EXPECT_EQ(facts.folder, "/media/card");
    }
}

}  // namespace
}  // namespace bildkurier
