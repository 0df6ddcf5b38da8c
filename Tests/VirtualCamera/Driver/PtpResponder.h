// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Plug.h"
#include "PtpObjects.h"
#include "PtpOutbox.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <set>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace bildkurier {

/// Answers the picture transfer protocol as a camera does. Whatever would change something on
/// the camera, it does not know.
class PtpResponder {
public:
    explicit PtpResponder(Plug plug);
    PtpResponder(const PtpResponder&) = delete;
    PtpResponder& operator=(const PtpResponder&) = delete;
    ~PtpResponder();

    /// A request as it came over the wire; the answers go to the outbox.
    void request(std::span<const std::uint8_t> bytes);
    PtpOutbox& outbox() { return outbox_; }
    /// The error of libgphoto2 that comes before what is in the outbox; 0 for none.
    int takeFault() { return std::exchange(fault_, 0); }

    /// Looks for new and removed files; the next thing to tell of them, or nothing.
    std::vector<std::uint8_t> nextEvent();

private:
    struct Request {
        std::uint16_t code = 0;
        std::uint32_t transaction = 0;
        std::vector<std::uint32_t> parameters;
    };

    void answer(const Request& request, std::uint16_t code,
                const std::vector<std::uint32_t>& parameters = {});
    void answerWith(const Request& request, const PtpPacket& data,
                    const std::vector<std::uint32_t>& parameters = {});
    void answerWithFile(const Request& request, std::uint64_t offset, std::uint64_t most);

    PtpPacket deviceInfo() const;
    PtpPacket storageIds() const;
    PtpPacket storageInfo() const;
    PtpPacket canonEntry(const PtpObjects::Object& object) const;
    PtpPacket objectInfo(const PtpObjects::Object& object) const;
    std::vector<std::uint32_t> selected(const Request& request) const;
    std::vector<std::string> askedAbout(const Request& request) const;
    int faultOf(const Request& request) const;
    bool isTooEarly(const std::string& name) const;
    void tellOf(const PtpObjects::Object& added);
    void tellOfGrowth(const PtpObjects::Object& added);
    void noteGrowth(std::uint32_t handle);
    void lookForChanges();
    std::int64_t announcedSize(const PtpObjects::Object& object) const;

    Plug plug_;
    std::vector<std::filesystem::path> stores_;
    PtpObjects objects_;
    PtpOutbox outbox_;
    struct Event {
        std::uint16_t code = 0;
        std::uint32_t parameter = 0;
        bool isGrowth = false;  ///< of a file that was told of early
    };
    std::deque<Event> events_;
    std::set<std::uint32_t> early_;  ///< objects told of before they are whole
    std::chrono::steady_clock::time_point nextLook_;
    int fault_ = 0;
};

}  // namespace bildkurier
