// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UsbSession.h"

#include "DownloadFence.h"

#include <utility>

namespace bildkurier {

void UsbSession::add(std::shared_ptr<UsbLoad> load) {
    std::unique_lock lock(mutex_);
    if (ended_ == End::Not) {
        loads_.push_back(std::move(load));
        return;
    }
    lock.unlock();
    load->done(std::unexpected(endReason()));
}

bool UsbSession::take(const std::shared_ptr<UsbLoad>& load) {
    const std::lock_guard lock(mutex_);
    return std::erase(loads_, load) != 0;
}

void UsbSession::end(End how) {
    std::unique_lock lock(mutex_);
    if (ended_ != End::Not) return;
    ended_ = how;
    const auto loads = std::exchange(loads_, {});
    lock.unlock();
    changed_.notify_all();
    for (const auto& load : loads) load->done(std::unexpected(endReason()));
}

bool UsbSession::hasEnded() const {
    const std::lock_guard lock(mutex_);
    return ended_ != End::Not;
}

Error UsbSession::endReason() const {
    const std::lock_guard lock(mutex_);
    return {ended_ == End::Gone ? "Die Kamera wurde getrennt" : "Das Laden wurde abgebrochen"};
}

bool UsbSession::endsWithin(std::chrono::milliseconds time) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, time, [this] { return ended_ != End::Not; });
}

void UsbSession::ifOpen(const std::string& folder, const std::function<void()>& action) const {
    withDownloadFence(folder, [&] {
        if (!hasEnded()) action();
    });
}

}  // namespace bildkurier
