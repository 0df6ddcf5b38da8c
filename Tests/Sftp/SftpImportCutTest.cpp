// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardToServer.h"
#include "SftpServerTest.h"

#include <array>
#include <filesystem>
#include <vector>

namespace bildkurier {
namespace {

/// One connection of an import breaks: the first asks what is there, then come four for each
/// file, which make the folder, look for the name, upload, and ask for the size.
class SftpImportCutTest : public SftpServerTest, public testing::WithParamInterface<std::size_t> {
public:
    static constexpr std::size_t connectionsOfImport = 9;

protected:
    /// What passes in the connection when all goes well.
    Traffic whole() {
        server->connection().finished();
        EXPECT_EQ(CardToServer(card, store, server->url("whole")).import().done, 2);
        const auto passed = server->connection().finished();
        EXPECT_EQ(passed.size(), connectionsOfImport);
        return passed.at(GetParam());
    }

    /// Imports with the connection broken, looks whether all is safe, and imports again until
    /// nothing is missing.
    void survives(const std::string& folder) {
        CardToServer import(card, store, server->url(folder));
        import.import();
        server->connection().finished();
        server->connection().behave();
        for (const auto& [name, contents] : finalFiles(folder))
            EXPECT_TRUE(contents == card.at(name)) << name;
        EXPECT_EQ(import.import().failed, 0);
        EXPECT_TRUE(finalFiles(folder) == card);
        EXPECT_EQ(import.import().total, 0);
        EXPECT_EQ(tree(local.path("root")), Tree{});
    }

    /// Without what was being uploaded when the connection broke.
    Tree finalFiles(const std::string& folder) const {
        if (!std::filesystem::exists(server->path(folder))) return {};
        Tree files = tree(server->path(folder));
        std::erase_if(files, [](const auto& file) { return file.first.ends_with(".part"); });
        return files;
    }

    const Tree card{{"IMG_0001.JPG", std::string(150'000, 'p') + "end"}, {"IMG_0002.JPG", "two"}};
};

TEST_P(SftpImportCutTest, IsMadeGoodByTheNextImport) {
    const auto all = whole();
    const std::array cuts{
        Traffic{all.toServer / 2, unlimited}, Traffic{unlimited, all.toClient / 2},
        Traffic{unlimited, all.toClient - 150}, Traffic{unlimited, all.toClient - 60}};
    for (std::size_t n = 0; n < cuts.size(); ++n) {
        SCOPED_TRACE(n);
        server->connection().cutNext(cuts.at(n), GetParam());
        survives(std::to_string(n));
    }
}

TEST_P(SftpImportCutTest, IsMadeGoodWhenTheServerDied) {
    const auto all = whole();
    server->connection().killNext({all.toServer * 2 / 3, unlimited}, GetParam());
    survives("killed");
}

INSTANTIATE_TEST_SUITE_P(EveryConnection, SftpImportCutTest,
                         testing::Range<std::size_t>(0, SftpImportCutTest::connectionsOfImport));

}  // namespace
}  // namespace bildkurier
