// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ListingLog.h"

namespace bildkurier {

namespace {

constexpr std::string_view handles = "PTP_OC 0x1007 ";
constexpr std::string_view description = "PTP_OC 0x1008 ";

}  // namespace

void ListingLog::read(std::string_view function, std::string_view message) {
    if (function == "ptp_usb_sendreq" && message.contains(description)) onObject_();
    if (function == "ptp_usb_sendreq" && message.contains(handles))
        asksAllCards_ = message.contains("(0xffffffff,");
    if (function.starts_with("ptp_usb_") && message.contains(" failed: ")) readFault(message);
    // What cannot be told from another by its name is left out, too.
    if (message.starts_with("Duplicate") || message.starts_with("list changed again"))
        omits_ = true;
}

void ListingLog::readFault(std::string_view message) {
    // The library then asks for one card after the other.
    if (message.starts_with(handles) && asksAllCards_) return;
    // It then asks in another way.
    if (message.starts_with(handles) && message.ends_with("(0x2006)")) return;
    if (!message.starts_with(handles) && !message.starts_with(description)) return;
    omits_ = true;
    // The protocol's answers and those of the makers; all others are the library's own.
    const std::string_view code = message.substr(message.rfind('(') + 1);
    if (!code.starts_with("0x2") && !code.starts_with("0xa")) isDisturbed_ = true;
}

}  // namespace bildkurier
