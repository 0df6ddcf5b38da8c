// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportError.h"

#include "Formatting.h"

#include <fmt/format.h>

namespace bildkurier {

Error ImportError::notEnoughSpace(std::int64_t largest, std::int64_t free) {
    return {fmt::format("Zu wenig Platz für die größte Datei ({} nötig, {} frei).",
                        formatBytes(largest), formatBytes(free))};
}

}  // namespace bildkurier
