// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ServerName.h"

#include <gtest/gtest.h>

namespace bildkurier {
namespace {

TEST(IsHostName, TakesNamesAndNumbers) {
    for (const char* host :
         {"nas", "nas.example.com", "my_nas-2", "192.168.0.7", "[::1]", "[fe80::1%eth0]", "büro"})
        EXPECT_TRUE(isHostName(host)) << host;
}

TEST(IsHostName, RefusesWhatIsNoneOrMeansSomethingToAProgram) {
    for (const char* host :
         {"",        "[]",   "[",    "]",     "[[::1]]", "::1",  "nas:22", "[::1]:22", "-oX=y",
          "[-oX=y]", "n as", " nas", "nas/x", "a@b",     "n\ns", "n\x7Fs", "$(x)",     "`x`",
          "a;b",     "a|b",  "a&b",  "a'b",   "a\"b",    "a\\b", "a,b",    "*",        "!a"})
        EXPECT_FALSE(isHostName(host)) << host;
}

TEST(IsLoginName, TakesWhateverSomebodyMayBeCalled) {
    for (const char* user : {"anna", "anna@firma", "FIRMA\\anna", "Anna B", "a-b", "änna"})
        EXPECT_TRUE(isLoginName(user)) << user;
}

TEST(IsLoginName, RefusesWhatMeansSomethingToAProgram) {
    for (const char* user :
         {"", "-lroot", "anna -oX=y", "a:b", "a\nb", "$(x)", "`x`", "a;b", "a'b", "a\"b", "a\\"})
        EXPECT_FALSE(isLoginName(user)) << user;
}

}  // namespace
}  // namespace bildkurier
