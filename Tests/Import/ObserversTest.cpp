// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Observers.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace bildkurier {
namespace {

class ObserversTest : public testing::Test {
protected:
    Handle hear(const std::string& name) {
        return observers.add([this, name] { heard += name; });
    }

    Observers observers;
    std::string heard;
};

TEST_F(ObserversTest, HearOfEachChangeInTheirOrder) {
    const Handle a = hear("a");
    const Handle b = hear("b");
    EXPECT_EQ(heard, "");
    observers.notify();
    observers.notify();
    EXPECT_EQ(heard, "abab");
}

TEST_F(ObserversTest, HearNothingOnceTheirHandleIsDropped) {
    Handle a = hear("a");
    const Handle b = hear("b");
    a.reset();
    observers.notify();
    EXPECT_EQ(heard, "b");
}

TEST_F(ObserversTest, MayComeWhileOthersHear) {
    std::vector<Handle> late;
    const Handle a = observers.add([&] { late.push_back(hear("b")); });
    observers.notify();
    EXPECT_EQ(heard, "");
    observers.notify();
    EXPECT_EQ(heard, "b");
}

TEST_F(ObserversTest, MayGoWhileOthersHear) {
    Handle self;
    Handle later;
    self = observers.add([&] {
        heard += "a";
        later.reset();
        self.reset();
    });
    later = hear("b");
    const Handle last = hear("c");
    observers.notify();
    observers.notify();
    EXPECT_EQ(heard, "acc");
}

TEST_F(ObserversTest, MayBringAboutAChangeThemselves) {
    const Handle a = observers.add([&] {
        heard += "a";
        if (heard == "a") observers.notify();
    });
    const Handle b = hear("b");
    observers.notify();
    EXPECT_EQ(heard, "aabb");
}

TEST_F(ObserversTest, MayOutliveWhatTheyObserve) {
    Handle left;
    {
        Observers shortLived;
        left = shortLived.add([this] { heard += "a"; });
        shortLived.notify();
    }
    left.reset();
    EXPECT_EQ(heard, "a");
}

}  // namespace
}  // namespace bildkurier
