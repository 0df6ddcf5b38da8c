// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Cable.h"

#include <gphoto2/gphoto2-port-result.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace bildkurier {

namespace {

/// Lets the time of a camera that says nothing pass.
void pass(int milliseconds) { ::poll(nullptr, 0, milliseconds); }

}  // namespace

Cable::Cable(Plug plug, int claim) : plug_(std::move(plug)), claim_(claim), responder_(plug_) {}

Cable::~Cable() { ::close(claim_); }

int Cable::check() const { return plug_.isIn() ? GP_OK : GP_ERROR_IO_USB_FIND; }

int Cable::reset() {
    responder_.outbox().clear();
    request_.clear();
    return check();
}

int Cable::write(std::span<const char> bytes) {
    if (const int code = check(); code != GP_OK) return code;
    constexpr std::size_t least = 12;
    request_.insert(request_.end(), bytes.begin(), bytes.end());
    const std::size_t length = ptpNumber(request_, 0);
    if (request_.size() >= least && request_.size() >= length) {
        const auto whole = std::exchange(request_, {});
        constexpr std::uint32_t commandContainer = 1;
        if (ptpNumber(whole, 4, 2) == commandContainer) responder_.request(whole);
    }
    return static_cast<int>(bytes.size());
}

bool Cable::isFaultDue(std::size_t count) const {
    const std::int64_t at = plug_.number("fault_at");
    const std::int64_t most = plug_.number("faults");
    return at >= 0 && sent_ + count > static_cast<std::uint64_t>(at) &&
           (most < 0 || plug_.counted("faults") < most);
}

int Cable::fault(int milliseconds) {
    const std::string fault = plug_.text("fault");
    plug_.count("faults");
    if (fault == "pull") {
        plug_.pull();
        return GP_ERROR_IO_USB_FIND;
    }
    if (fault == "hang") {
        pass(milliseconds);
        return GP_ERROR_TIMEOUT;
    }
    return static_cast<int>(plug_.number("fault"));
}

int Cable::read(std::span<char> bytes, int milliseconds) {
    if (const int code = check(); code != GP_OK) return code;
    if (isFaultDue(bytes.size())) return fault(milliseconds);
    if (const int code = responder_.takeFault(); code != GP_OK) return code;
    if (responder_.outbox().isEmpty()) {
        pass(milliseconds);
        return GP_ERROR_TIMEOUT;
    }
    const std::size_t count = responder_.outbox().read(bytes);
    sent_ += count;
    if (const std::int64_t rate = plug_.number("rate"); rate > 0)
        pass(static_cast<int>(static_cast<std::int64_t>(count) * 1000 / rate));
    return static_cast<int>(count);
}

int Cable::event(std::span<char> bytes, int milliseconds) {
    if (const int code = check(); code != GP_OK) return code;
    if (plug_.counted("event-faults") < plug_.number("event_faults")) {
        plug_.count("event-faults");
        return static_cast<int>(plug_.number("event_fault"));
    }
    const auto event = responder_.nextEvent();
    if (event.empty()) {
        pass(milliseconds);
        return check() == GP_OK ? GP_ERROR_TIMEOUT : check();
    }
    const std::size_t count = std::min(bytes.size(), event.size());
    std::copy_n(event.begin(), count, bytes.begin());
    return static_cast<int>(count);
}

}  // namespace bildkurier
