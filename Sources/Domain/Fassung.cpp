// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Fassung.h"

#include <cstdlib>

namespace bildkurier {

bool Fassung::sandbox() {
    // Nothing changes what is read here. NOLINTNEXTLINE(concurrency-mt-unsafe)
    static const bool confined = std::getenv("APP_SANDBOX_CONTAINER_ID") != nullptr;
    return confined;
}

std::string Fassung::webseite() { return "https://bildkurier.example/"; }

std::string Fassung::datenschutz() { return webseite() + "datenschutz"; }

std::string Fassung::support() { return webseite() + "support"; }

Url Fassung::zwischenOrdner(const std::string& caches, const std::string& bundleIdentifier) {
    constexpr auto usual = "local.quarzfeld.bildkurier";
    return Url::file(caches).appending(bundleIdentifier.empty() ? usual : bundleIdentifier);
}

}  // namespace bildkurier
