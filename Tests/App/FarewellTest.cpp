// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Farewell.h"
#include "ImportModelTest.h"

#include <memory>
#include <optional>
#include <vector>

namespace bildkurier {
namespace {

class FarewellTest : public ImportModelTest {
protected:
    /// A model with a camera of two files that wait.
    void SetUp() override {
        ASSERT_TRUE(store->createDirectory(settings->storedDestination));
        make();
        const auto attached = camera("1");
        for (const auto* name : {"A.JPG", "B.JPG"})
            pictures.push_back(file(*attached, name, "Inhalt"));
        for (const auto& picture : pictures) picture->holdsBack = true;
        connect(attached);
        farewell.emplace(model, [this] { ++quits; });
    }

    void startImport() {
        model->startImport();
        loop.settle();
        ASSERT_EQ(model->phase(), ImportModel::Phase::importing);
    }

    std::vector<std::shared_ptr<FakeCameraFile>> pictures;
    std::optional<Farewell> farewell;
    int quits = 0;
};

TEST_F(FarewellTest, QuitsAtOnceWhereNoImportRuns) {
    farewell->ask();
    EXPECT_EQ(quits, 1);
}

TEST_F(FarewellTest, LetsTheFileInHandArrive) {
    startImport();
    farewell->ask();
    EXPECT_EQ(model->status(), "Breche nach der aktuellen Datei ab …");
    loop.advance(Duration(10));
    EXPECT_EQ(quits, 0);
    pictures[0]->deliver();
    loop.settle();
    EXPECT_GE(quits, 1);
    EXPECT_TRUE(store->fileExists(settings->storedDestination.appending("JPG/A.JPG")));
    EXPECT_EQ(pictures[1]->downloads, 0);
}

TEST_F(FarewellTest, WaitsForNothingWhenAskedTwice) {
    startImport();
    farewell->ask();
    farewell->ask();
    EXPECT_EQ(quits, 1);
}

}  // namespace
}  // namespace bildkurier
