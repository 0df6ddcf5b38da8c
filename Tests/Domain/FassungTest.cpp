// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Fassung.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

TEST(Fassung, StagesUploadsBelowTheFolderForCaches) {
    EXPECT_EQ(Fassung::zwischenOrdner("/home/anna/.cache"),
              Url::file("/home/anna/.cache/local.quarzfeld.bildkurier"));
    EXPECT_EQ(Fassung::zwischenOrdner("/home/anna/.cache", "org.example.app"),
              Url::file("/home/anna/.cache/org.example.app"));
}

}  // namespace
}  // namespace bildkurier
