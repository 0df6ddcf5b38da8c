// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "WithoutRights.h"

namespace bildkurier {

WithoutRights::WithoutRights() : user_(::geteuid()) {
    constexpr uid_t nobody = 65534;
    if (user_ == 0) (void)::seteuid(nobody);
}

WithoutRights::~WithoutRights() { (void)::seteuid(user_); }

}  // namespace bildkurier
