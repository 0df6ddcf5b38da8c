// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Url.h"

#include <string>
#include <string_view>

namespace bildkurier {

/// The URL of a folder on an SFTP server from what the user typed; `host` may end in ":port".
Url sftpURL(std::string_view user, std::string_view host, std::string_view path);

/// Without the spaces and tabs at both ends, which count in no part of a server's address.
std::string withoutBlanks(const std::string& text);

}  // namespace bildkurier
