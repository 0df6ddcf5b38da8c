// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "EventsUntil.h"
#include "FakePortal.h"
#include "PrivateBus.h"
#include "SystemAppearance.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QPalette>

namespace bildkurier {
namespace {

using Preference = SystemAppearance::Preference;

bool isDark() { return QGuiApplication::palette().color(QPalette::Window).lightness() < 128; }

class SystemAppearanceTest : public testing::Test {
protected:
    void TearDown() override { SystemAppearance::apply(Preference::none); }
};

TEST_F(SystemAppearanceTest, GivesThePaletteThatIsPreferred) {
    const bool usual = isDark();
    SystemAppearance::apply(Preference::dark);
    EXPECT_TRUE(isDark());
    SystemAppearance::apply(Preference::light);
    EXPECT_FALSE(isDark());
    SystemAppearance::apply(Preference::none);
    EXPECT_EQ(isDark(), usual);
}

TEST_F(SystemAppearanceTest, WritesWhatCanBeReadInBothPalettes) {
    for (const auto preference : {Preference::dark, Preference::light}) {
        SystemAppearance::apply(preference);
        const auto palette = QGuiApplication::palette();
        for (const auto& [text, ground] :
             {std::pair(QPalette::WindowText, QPalette::Window),
              std::pair(QPalette::Text, QPalette::Base),
              std::pair(QPalette::ButtonText, QPalette::Button),
              std::pair(QPalette::HighlightedText, QPalette::Highlight)})
            EXPECT_GT(std::abs(palette.color(text).lightness() - palette.color(ground).lightness()),
                      100);
    }
}

TEST_F(SystemAppearanceTest, AsksTheDesktopAndHearsOfChanges) {
    if (!PrivateBus::isInstalled()) GTEST_SKIP() << "There is no dbus-daemon.";
    const PrivateBus bus;
    FakePortal portal;
    ASSERT_TRUE(portal.isThere());
    portal.colorScheme = 1;
    const SystemAppearance appearance;
    EXPECT_FALSE(isDark());
    EXPECT_TRUE(eventsUntil([] { return isDark(); }));
    portal.change("color-scheme", 2);
    EXPECT_TRUE(eventsUntil([] { return !isDark(); }));
    portal.change("contrast", 1);
    portal.change("color-scheme", 1);
    EXPECT_TRUE(eventsUntil([] { return isDark(); }));
}

}  // namespace
}  // namespace bildkurier
