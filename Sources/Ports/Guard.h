// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace bildkurier {

/// Lets late answers through only while their owner exists and has not moved on. Main thread;
/// the wrapped callbacks may be carried across threads, but must be called on the main thread.
class Guard {
public:
    /// A callback that does nothing once this guard is renewed or gone.
    template <class Callback>
    auto operator()(Callback callback) const {
        return [alive = watch(),
                callback = std::move(callback)]<class... Args>(Args&&... args) mutable {
            if (!alive.expired()) callback(std::forward<Args>(args)...);
        };
    }

    /// Expires when this guard is renewed or gone. May be asked from any thread.
    std::weak_ptr<void> watch() const { return token_; }

    /// Drops every answer still outstanding.
    void renew() { token_ = std::make_shared<char>(); }

private:
    std::shared_ptr<void> token_ = std::make_shared<char>();
};

}  // namespace bildkurier
