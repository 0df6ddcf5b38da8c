// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <dlfcn.h>

#include <atomic>

namespace bildkurier::faults {

template <class Function>
class Next;

/// The function of that name that the program would have called without this library.
/// Looked up on first use, without a lock: this runs below everything else.
template <class Result, class... Parameters>
class Next<Result(Parameters...)> {
public:
    constexpr explicit Next(const char* name) : name_(name) {}

    Result operator()(Parameters... parameters) {
        auto* function = function_.load(std::memory_order_relaxed);
        if (!function) {
            function = reinterpret_cast<Result (*)(Parameters...)>(dlsym(RTLD_NEXT, name_));
            function_.store(function, std::memory_order_relaxed);
        }
        return function(parameters...);
    }

private:
    const char* name_;
    std::atomic<Result (*)(Parameters...)> function_ = nullptr;
};

}  // namespace bildkurier::faults
