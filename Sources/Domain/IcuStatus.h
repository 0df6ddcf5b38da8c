// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <unicode/errorcode.h>

#include <stdexcept>
#include <string>

namespace bildkurier {

/// The status argument of ICU calls: `assertSuccess` after them throws when one failed, which
/// only an installation without ICU's data makes them do.
class IcuStatus final : public icu::ErrorCode {
protected:
    void handleFailure() const override {
        throw std::runtime_error(std::string("ICU: ") + errorName());
    }
};

}  // namespace bildkurier
