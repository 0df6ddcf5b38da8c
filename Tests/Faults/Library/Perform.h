// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Gate.h"

#include <cerrno>
#include <cstddef>
#include <type_traits>

namespace bildkurier::faults {

template <class Result>
Result failure() {
    if constexpr (std::is_pointer_v<Result>) {
        return nullptr;
    } else {
        return -1;
    }
}

template <class Result>
long number(Result result) {
    if constexpr (std::is_pointer_v<Result>) {
        return result ? 0 : -1;
    } else {
        return static_cast<long>(result);
    }
}

/// Makes a call, unless it is to fail. `call` takes how many bytes it is to write if it writes
/// any; `failing` is what a call that fails does all the same.
template <class Call, class Failing>
auto perform(const Touch& touch, Call call, Failing failing) {
    const auto make = [&call](std::size_t bytes) {
        if constexpr (std::is_invocable_v<Call, std::size_t>) {
            return call(bytes);
        } else {
            return call();
        }
    };
    if (!Gate::concerns(touch)) return make(touch.bytes);

    const int errnoBefore = errno;
    Gate gate(touch);
    errno = errnoBefore;
    auto result = failure<decltype(make(0))>();
    if (gate.verdict() == Gate::Verdict::fail) {
        failing();
        errno = Gate::error();
    } else {
        const bool half = gate.verdict() == Gate::Verdict::halve;
        result = make(half ? touch.bytes / 2 : touch.bytes);
    }
    const int errnoAfter = errno;
    gate.done(number(result), errnoAfter);
    errno = errnoAfter;
    return result;
}

template <class Call>
auto perform(const Touch& touch, Call call) {
    return perform(touch, call, [] {});
}

}  // namespace bildkurier::faults
