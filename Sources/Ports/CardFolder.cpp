// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CardFolder.h"

#include "FileName.h"

#include <fmt/format.h>

#include <filesystem>
#include <system_error>

namespace bildkurier {

Result<> checkCardFolder(const std::string& path) {
    std::error_code error;
    const std::filesystem::directory_iterator entries(path, error);
    if (!error) return {};
    return failure(fmt::format("Die Karte „{}“ ist kein lesbarer Ordner.", displayText(path)));
}

}  // namespace bildkurier
