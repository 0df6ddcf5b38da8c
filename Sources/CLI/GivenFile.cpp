// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "GivenFile.h"

#include <utility>

namespace bildkurier {

GivenFile::GivenFile(std::optional<std::string> path) {
    if (path) file_ = Url::file(*std::move(path));
}

std::optional<Url> GivenFile::chooseFolder(const Url& /*start*/) { return std::nullopt; }

std::optional<Url> GivenFile::chooseFile(const Url& /*start*/, const std::string& /*prompt*/) {
    return file_;
}

}  // namespace bildkurier
