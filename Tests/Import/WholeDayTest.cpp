// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "PluggedCameraTest.h"

#include <fmt/format.h>

namespace bildkurier {
namespace {

using Phase = ImportModel::Phase;
using namespace std::string_literals;

/// A camera with many files whose cable does not hold.
class WholeDayTest : public PluggedCameraTest {
protected:
    static constexpr int cardSize = 2000;

    void SetUp() override {
        for (int number = 0; number < cardSize; ++number) {
            card.push_back(fmt::format("IMG_{:04}.JPG", number));
        }
        start();
    }

    /// Plugs the camera in, upon which the import begins or goes on. It delivers so many files
    /// and sticks in the next one, if there is one.
    void plugInFor(int deliveries) {
        const int missing = cardSize - arrived;
        attached = plugIn(fmt::format("Stecker {}", begunWith.size()), "serial:1", card,
                          arrived + deliveries);
        if (begunWith.empty()) {
            startImport();
        } else if (isImporting()) {
            EXPECT_EQ(*(model->log().rbegin() + deliveries), continued(missing));
        }
        begunWith.push_back(attached);
        delivered = deliveries;
        arrived += deliveries;
    }

    FakeCameraFile& stuck() const { return fileOf(*attached, static_cast<std::size_t>(arrived)); }

    /// The cable slips, and it takes a while until somebody notices.
    void drop() {
        ASSERT_TRUE(isImporting());
        ASSERT_EQ(sleepBlocker->reason, "Bildkurier läuft");
        ASSERT_EQ(stuck().downloads, 1);
        const Date dropped = loop.date();
        unplug(attached);
        EXPECT_EQ(model->phase(), Phase::noCamera);
        EXPECT_EQ(sleepBlocker->reason, std::nullopt);
        EXPECT_EQ(loop.timers(), 0);
        EXPECT_LE(model->log().size(), 500);
        loop.advance(Duration(2700));
        ASSERT_EQ(loop.date(), dropped + std::chrono::seconds(2700));
    }

    int downloadsBegun() const {
        int sum = 0;
        for (const auto& connected : begunWith) {
            for (int index = 0; index < cardSize; ++index) {
                sum += fileOf(*connected, static_cast<std::size_t>(index)).downloads;
            }
        }
        return sum;
    }

    Names card;
    std::shared_ptr<FakeCamera> attached;
    std::vector<std::shared_ptr<FakeCamera>> begunWith;  ///< each connection's camera
    int delivered = 0;                                   ///< files, over this connection
    int arrived = 0;                                     ///< files, since the morning
};

TEST_F(WholeDayTest, LoadsEveryFileOnceFromACameraThatDropsOutThirtyTimes) {
    const Instant morning = loop.now();
    int lostInHand = 0;
    for (int drops = 0; drops < 30; ++drops) {
        SCOPED_TRACE(drops);
        plugInFor(drops % 5 > 2 ? 0 : 100);
        loop.advance(Duration(10));
        if (drops % 2 == 0) stuck().grow(5);
        loop.advance(Duration(10));
        const bool arrivesLate = drops % 7 == 0;
        if (arrivesLate) {
            stuck().deliver();
            ASSERT_TRUE(loop.stepMain());
            ASSERT_TRUE(model->progress().isTransferring);
            ASSERT_TRUE(loop.stepBackground());
        }
        const std::string line =
            disconnected(delivered, static_cast<int>(model->newFiles().size()));
        drop();
        EXPECT_EQ(model->status(), goesOn);
        EXPECT_EQ(*(model->log().end() - (arrivesLate ? 2 : 1)), line);
        EXPECT_EQ(model->log().back().starts_with("✓ "), arrivesLate);
        arrivesLate ? ++arrived : ++lostInHand;
    }
    ASSERT_LT(arrived, cardSize);
    plugInFor(cardSize - arrived);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->status(), nothingNew);
    EXPECT_TRUE(model->log().back().starts_with(fmt::format("Fertig: {} geladen", delivered)));
    EXPECT_EQ(imported(), inTypeFolder(card));
    EXPECT_EQ(downloadsBegun(), cardSize + lostInHand);
    EXPECT_GT(loop.now() - morning, std::chrono::hours(22));
}

TEST_F(WholeDayTest, StopsWithAdviceAfterThreeFruitlessDisconnectsInARow) {
    for (const int deliveries : {700, 0, 0, 300, 0, 0}) {
        plugInFor(deliveries);
        drop();
        EXPECT_EQ(model->status(), goesOn);
    }
    plugInFor(0);
    const std::string line = disconnected(0, cardSize - 1000);
    drop();
    EXPECT_EQ(model->status(), gaveUp);
    EXPECT_EQ((Log{model->log().end() - 2, model->log().end()}), (Log{line, "✗ "s + gaveUp}));

    plugInFor(0);
    EXPECT_EQ(model->phase(), Phase::ready);
    EXPECT_EQ(model->log().back(), "✗ "s + gaveUp);
    EXPECT_EQ(imported().size(), 1000);
    unplug(attached);
    plugInFor(cardSize - arrived);
    startImport();
    EXPECT_EQ(imported(), inTypeFolder(card));
}

}  // namespace
}  // namespace bildkurier
