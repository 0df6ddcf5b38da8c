// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SftpUrl.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>

namespace bildkurier {
namespace {

TEST(SftpURL, IsMadeOfUserHostAndPath) {
    EXPECT_EQ(sftpURL("anna", "nas", "/photos"),
              (Url{.scheme = "sftp", .user = "anna", .host = "nas", .path = "/photos"}));
    EXPECT_EQ(sftpURL("", "", ""), (Url{.scheme = "sftp", .path = "/"}));
}

TEST(SftpURL, TakesAPortFromTheHost) {
    const struct {
        std::string typed;
        std::string host;
        std::optional<std::uint16_t> port;
    } cases[] = {
        {"nas", "nas", std::nullopt},
        {"nas:2222", "nas", 2222},
        {"nas:1", "nas", 1},
        {"nas:65535", "nas", 65535},
        {"nas:022", "nas", 22},
        {"nas:0", "nas:0", std::nullopt},
        {"nas:65536", "nas:65536", std::nullopt},
        {"nas:70000", "nas:70000", std::nullopt},
        {"nas:99999999999999999999", "nas:99999999999999999999", std::nullopt},
        {"nas:-22", "nas:-22", std::nullopt},
        {"nas:ab", "nas:ab", std::nullopt},
        {"nas:22a", "nas:22a", std::nullopt},
        {"nas: 22", "nas: 22", std::nullopt},
        {"nas:", "nas:", std::nullopt},
        {":22", "", 22},
        {"a:b:c", "a:b:c", std::nullopt},
        {"a:b:22", "a:b:22", std::nullopt},
        {"::1", "::1", std::nullopt},
    };
    for (const auto& [typed, host, port] : cases) {
        const Url url = sftpURL("anna", typed, "/");
        EXPECT_EQ(url.host, host) << typed;
        EXPECT_EQ(url.port, port) << typed;
    }
}

TEST(SftpURL, BeginsItsPathWithASlash) {
    const struct {
        std::string typed;
        std::string path;
    } cases[] = {
        {"", "/"},
        {"/", "/"},
        {"photos", "/photos"},
        {"/photos", "/photos"},
        {"photos/", "/photos/"},
        {"~/Bilder ü", "/~/Bilder ü"},
    };
    for (const auto& [typed, path] : cases) EXPECT_EQ(sftpURL("anna", "nas", typed).path, path);
}

}  // namespace
}  // namespace bildkurier
