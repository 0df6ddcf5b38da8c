// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "InTimeZone.h"

#include <stdlib.h>
#include <time.h>

namespace bildkurier {

// The environment is changed while the test has no other thread.
// NOLINTBEGIN(concurrency-mt-unsafe)
InTimeZone::InTimeZone(const char* name) {
    if (const char* before = ::getenv("TZ")) before_ = before;
    ::setenv("TZ", name, 1);
    ::tzset();
}

InTimeZone::~InTimeZone() {
    if (before_) {
        ::setenv("TZ", before_->c_str(), 1);
    } else {
        ::unsetenv("TZ");
    }
    ::tzset();
}
// NOLINTEND(concurrency-mt-unsafe)

}  // namespace bildkurier
