// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Url.h"

#include <string>

namespace bildkurier {

/// What this edition of the program is.
struct Fassung {
    /// Whether the system confines this process: servers then accept no key but the
    /// application's own. By the environment at the first call.
    static bool sandbox();

    /// Web pages: the product's, and those for privacy and support.
    static std::string webseite();
    static std::string datenschutz();
    static std::string support();

    /// The folder of this computer in which uploads are staged, below the user's folder for
    /// `caches`. A program that is no bundle has no identifier.
    static Url zwischenOrdner(const std::string& caches, const std::string& bundleIdentifier = "");
};

}  // namespace bildkurier
