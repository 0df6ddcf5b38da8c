// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <string>

namespace bildkurier {

/// Plans an import as the command line does, without reading capture dates and without
/// printing. Answers how many files are missing.
std::int64_t planCard(const std::string& card, const std::string& destination);

/// This process's highest resident memory so far, in bytes.
std::int64_t peakMemory();

}  // namespace bildkurier
