// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include <gtest/gtest.h>
#include <unicode/errorcode.h>
#include <unicode/locid.h>

#include <cstdlib>

namespace bildkurier {
namespace {

/// The user of this test program: German, in Berlin. Set before the first shared formatter is
/// made.
class UserInBerlin final : public testing::Environment {
    void SetUp() override {
        // No other thread runs yet. NOLINTNEXTLINE(concurrency-mt-unsafe)
        ASSERT_EQ(setenv("TZ", "Europe/Berlin", 1), 0);
        icu::ErrorCode status;
        icu::Locale::setDefault(icu::Locale::getGermany(), status);
        ASSERT_TRUE(status.isSuccess());
    }
};

const auto* const userInBerlin = testing::AddGlobalTestEnvironment(new UserInBerlin);

}  // namespace
}  // namespace bildkurier
