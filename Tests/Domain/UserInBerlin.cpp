// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "InTimeZone.h"

#include <gtest/gtest.h>
#include <unicode/errorcode.h>
#include <unicode/locid.h>

#include <optional>

namespace bildkurier {
namespace {

/// The user of this test program: German, in Berlin. Set before the first shared formatter is
/// made.
class UserInBerlin final : public testing::Environment {
    void SetUp() override {
        zone_.emplace("Europe/Berlin");
        icu::ErrorCode status;
        icu::Locale::setDefault(icu::Locale::getGermany(), status);
        ASSERT_TRUE(status.isSuccess());
    }
    void TearDown() override { zone_.reset(); }

    std::optional<InTimeZone> zone_;
};

const auto* const userInBerlin = testing::AddGlobalTestEnvironment(new UserInBerlin);

}  // namespace
}  // namespace bildkurier
