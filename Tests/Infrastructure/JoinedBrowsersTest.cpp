// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeNativeBrowser.h"
#include "FakeNativeDevice.h"
#include "JoinedBrowsers.h"
#include "RecordingBrowserSink.h"

#include <gtest/gtest.h>

#include <utility>

namespace bildkurier {
namespace {

using Events = std::vector<std::string>;

class JoinedBrowsersTest : public testing::Test {
protected:
    JoinedBrowsersTest() {
        std::vector<std::unique_ptr<NativeBrowser>> both;
        both.push_back(std::make_unique<FakeNativeBrowser>(cards));
        both.push_back(std::make_unique<FakeNativeBrowser>(cameras));
        joined = std::make_unique<JoinedBrowsers>(std::move(both));
        joined->start(sink);
    }

    static std::shared_ptr<NativeDevice> device(const std::string& name) {
        return std::make_shared<FakeNativeDevice>(DeviceFacts{.name = name});
    }

    std::weak_ptr<BrowserSink> cards;
    std::weak_ptr<BrowserSink> cameras;
    std::shared_ptr<RecordingBrowserSink> sink = std::make_shared<RecordingBrowserSink>();
    std::unique_ptr<JoinedBrowsers> joined;
};

TEST_F(JoinedBrowsersTest, PassesOnTheDevicesOfAll) {
    const auto card = device("Karte");
    cards.lock()->deviceAdded(card);
    cameras.lock()->deviceAdded(device("Kamera"));
    cards.lock()->deviceIdentified(card);
    cards.lock()->deviceRemoved(card);
    EXPECT_EQ(sink->events, (Events{"+Karte", "+Kamera", "=Karte", "-Karte"}));
}

TEST_F(JoinedBrowsersTest, HasReportedAllOnceEachHas) {
    cameras.lock()->attachedDevicesReported();
    EXPECT_EQ(sink->events, Events());
    cards.lock()->attachedDevicesReported();
    EXPECT_EQ(sink->events, Events{"reported"});
}

TEST_F(JoinedBrowsersTest, KeepsNobodyAlive) {
    const std::weak_ptr<BrowserSink> gone = sink;
    sink.reset();
    cards.lock()->deviceAdded(device("Karte"));
    EXPECT_TRUE(gone.expired());
    joined.reset();
    EXPECT_TRUE(cards.expired());
}

}  // namespace
}  // namespace bildkurier
