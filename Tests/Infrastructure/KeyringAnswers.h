// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Result.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

// What a keyring says, and who may read its files.

namespace bildkurier {

inline constexpr auto noPrivateKey =
    "Das ist kein privater ssh-Schlüssel (z. B. ~/.ssh/id_ed25519, nicht die .pub-Datei).";
inline constexpr auto hasPassphrase =
    "Der Schlüssel ist mit einer Passphrase geschützt. Die App fragt nie nach einem Passwort; "
    "bitte einen Schlüssel ohne Passphrase nehmen oder hier einen neuen erzeugen.";
inline constexpr auto notAccepted = "Schlüssel wird von ssh-keygen nicht angenommen.";

inline std::string message(const Result<>& result) { return result ? "" : result.error().message; }

inline unsigned permissions(const std::string& path) {
    struct stat facts{};
    EXPECT_EQ(::lstat(path.c_str(), &facts), 0) << path;
    return facts.st_mode & 07777;
}

}  // namespace bildkurier
