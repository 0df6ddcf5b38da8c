// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DestinationReader.h"
#include "MountTable.h"
#include "TemporaryFolder.h"
#include "TemporaryVolume.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace bildkurier {
namespace {

using Sentences = std::vector<std::string>;

const std::string inMemory = "Das Ziel liegt nur im Arbeitsspeicher dieses Computers.";
const std::string onOneVolume = "Karte und Ziel liegen auf demselben Datenträger.";

/// Destinations on this computer and cards that are folders of it.
class DestinationReaderTest : public testing::Test {
protected:
    void SetUp() override {
        if (!volume.isMounted()) GTEST_SKIP() << "mounting a volume takes root";
        if (mountOf(folder.path())->type == "tmpfs")
            GTEST_SKIP() << "the folder for temporary files is in memory";
    }

    Sentences cautions(const std::string& destination, const std::optional<std::string>& card) {
        return reader.cautions(Url::file(destination),
                               card ? std::optional(Url::file(*card)) : std::nullopt);
    }

    TemporaryFolder folder;
    TemporaryVolume volume{1'000'000};
    DestinationReader reader{nullptr};
};

TEST_F(DestinationReaderTest, SaysThatCardAndDestinationLieOnOneVolume) {
    const auto destination = folder.makeFolder("destination");
    EXPECT_EQ(cautions(destination, folder.makeFolder("card")), Sentences{onOneVolume});
    EXPECT_EQ(cautions(destination, volume.path()), Sentences{});
    EXPECT_EQ(cautions(destination, folder.path("weg")), Sentences{});
    EXPECT_EQ(cautions(destination, std::nullopt), Sentences{});
}

TEST_F(DestinationReaderTest, SaysThatTheDestinationIsInMemory) {
    EXPECT_EQ(cautions(volume.path(), folder.path()), Sentences{inMemory});
    EXPECT_EQ(cautions(volume.path(), std::nullopt), Sentences{inMemory});
    EXPECT_EQ(cautions(volume.path(), volume.path()), (Sentences{inMemory, onOneVolume}));
}

TEST_F(DestinationReaderTest, SaysNothingOfWhatItCannotKnow) {
    EXPECT_EQ(cautions(folder.path("weg"), folder.path()), Sentences{});
    Url server = Url::file(volume.path());
    server.scheme = "sftp";
    EXPECT_EQ(reader.cautions(server, Url::file(volume.path())), Sentences{});
}

}  // namespace
}  // namespace bildkurier
