// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Fassung.h"

#include <gtest/gtest.h>

#include <string>

namespace bildkurier {
namespace {

TEST(Fassung, StagesUploadsBelowTheFolderForCaches) {
    EXPECT_EQ(Fassung::zwischenOrdner("/home/anna/.cache"),
              Url::file("/home/anna/.cache/local.quarzfeld.bildkurier"));
    EXPECT_EQ(Fassung::zwischenOrdner("/home/anna/.cache", "org.example.app"),
              Url::file("/home/anna/.cache/org.example.app"));
}

TEST(Fassung, HasPagesForPrivacyAndSupportBelowTheProducts) {
    const std::string page = Fassung::webseite();
    EXPECT_TRUE(page.starts_with("https://"));
    EXPECT_TRUE(page.ends_with("/"));
    EXPECT_EQ(Fassung::datenschutz(), page + "datenschutz");
    EXPECT_EQ(Fassung::support(), page + "support");
}

}  // namespace
}  // namespace bildkurier
