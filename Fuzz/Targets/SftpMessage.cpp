// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Demand.h"
#include "SFTPFileStore.h"
#include "SftpComplaint.h"

#include <cstddef>
#include <cstdint>
#include <string>

using namespace bildkurier;

// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string output(reinterpret_cast<const char*>(data), size);
    const auto message = SFTPFileStore::message(output);
    demand(output.contains(message));
    const auto cause = causeOf(message, output);
    demand(output.contains(cause));
    const auto meaning = meaningOf(cause);
    demand(!meaning || !meaning->empty());
    if (message == output) return 0;
    demand(!message.empty());
    demand(!message.contains('\n'));
    demand(!message.starts_with("sftp>"));
    demand(!message.starts_with("Connection closed"));
    return 0;
}
