// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "BookmarkFileAccess.h"
#include "PathBookmarks.h"
#include "ScriptedSandbox.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace bildkurier {
namespace {

using SandboxCalls = std::vector<std::string>;

TEST(BookmarkFileAccess, GivesBackWhatItTookUpWhenTheHandleIsDropped) {
    const auto sandbox = std::make_shared<ScriptedSandbox>();
    Handle held = BookmarkFileAccess(sandbox).start(Url::file("/id"));
    ASSERT_TRUE(held);
    EXPECT_EQ(sandbox->calls, (SandboxCalls{"start /id"}));
    Handle second = held;
    held.reset();
    EXPECT_EQ(sandbox->calls.size(), 1);
    second.reset();
    EXPECT_EQ(sandbox->calls, (SandboxCalls{"start /id", "stop /id"}));
}

TEST(BookmarkFileAccess, GivesBackNothingWhereNothingWasTakenUp) {
    const auto sandbox = std::make_shared<ScriptedSandbox>();
    sandbox->startsAccess = false;
    EXPECT_FALSE(BookmarkFileAccess(sandbox).start(Url::file("/id")));
    EXPECT_EQ(sandbox->calls, (SandboxCalls{"start /id"}));
    EXPECT_FALSE(BookmarkFileAccess(std::make_shared<PathBookmarks>()).start(Url::file("/id")));
}

}  // namespace
}  // namespace bildkurier
