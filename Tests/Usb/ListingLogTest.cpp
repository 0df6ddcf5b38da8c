// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ListingLog.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace bildkurier {
namespace {

struct Message {
    std::string function;
    std::string text;
};

const Message asksForFolder{
    "ptp_usb_sendreq", "Sending PTP_OC 0x1007 (Get object handles) (0x10001,0x0,0x101) request..."};
const Message asksForAllCards{
    "ptp_usb_sendreq",
    "Sending PTP_OC 0x1007 (Get object handles) (0xffffffff,0x0,0xffffffff) request..."};
const Message getsNoFolder{"ptp_usb_getdata [usb.c:470]",
                           "PTP_OC 0x1007 receiving data failed: PTP I/O Error (0x02ff)"};
const Message describes{"ptp_usb_sendreq",
                        "Sending PTP_OC 0x1008 (Get object info) (0x101) request..."};

TEST(ListingLog, KnowsWhetherSomethingMayBeMissing) {
    const struct {
        std::vector<Message> messages;
        bool omits;
    } cases[] = {
        {{}, false},
        {{asksForFolder, describes}, false},
        {{asksForFolder, getsNoFolder}, true},
        {{asksForFolder,
          {"ptp_usb_getresp [usb.c:508]",
           "PTP_OC 0x1007 receiving resp failed: PTP Store Not Available (0x2013)"}},
         true},
        // It is asked for in another way.
        {{asksForFolder,
          {"ptp_usb_getresp [usb.c:508]",
           "PTP_OC 0x1007 receiving resp failed: PTP Parameter Not Supported (0x2006)"}},
         false},
        {{asksForAllCards, getsNoFolder}, false},
        {{asksForAllCards, getsNoFolder, asksForFolder}, false},
        {{asksForAllCards, asksForFolder, getsNoFolder}, true},
        {{describes,
          {"ptp_usb_getresp [usb.c:508]",
           "PTP_OC 0x1008 receiving resp failed: PTP Invalid Object Handle (0x2009)"}},
         true},
        {{{"ptp_usb_sendreq [usb.c:106]", "PTP_OC 0x1008 sending req failed: I/O problem (-7)"}},
         true},
        {{{"ptp_usb_getresp [usb.c:508]",
           "PTP_OC 0x9805 receiving resp failed: PTP Operation Not Supported (0x2005)"}},
         false},
        {{{"file_list_func [library.c:7978]",
           "Duplicate filename 'IMG_0001.JPG' in folder '/a'. Ignoring nth entry.\n"}},
         true},
        {{{"folder_list_func [library.c:8094]",
           "Duplicated foldername 'a' in folder '/'. should not happen!\n"}},
         true},
        {{{"file_list_func [library.c:7990]",
           "list changed again on second pass, returning anyway"}},
         true},
        {{{"gp_filesystem_list_files", "Listed 'PTP_OC 0x1008 failed: .JPG'"}}, false},
    };
    for (const auto& [messages, omits] : cases) {
        ListingLog log([] {});
        for (const auto& [function, text] : messages) log.read(function, text);
        EXPECT_EQ(log.omits(), omits) << (messages.empty() ? "" : messages.back().text);
    }
}

TEST(ListingLog, KnowsAnAnswerFromNone) {
    const struct {
        std::string text;
        bool isDisturbed;
    } cases[] = {
        {getsNoFolder.text, true},
        {"PTP_OC 0x1008 sending req failed: I/O problem (-7)", true},
        {"PTP_OC 0x1008 receiving resp failed: PTP Invalid Object Handle (0x2009)", false},
        {"PTP_OC 0x1008 receiving resp failed: (0xa001)", false},
        {"PTP_OC 0x9805 receiving resp failed: PTP I/O Error (0x02ff)", false},
    };
    for (const auto& [text, isDisturbed] : cases) {
        ListingLog log([] {});
        log.read("ptp_usb_getresp [usb.c:508]", text);
        EXPECT_EQ(log.isDisturbed(), isDisturbed) << text;
    }
}

TEST(ListingLog, TellsOfEachObjectThatIsDescribed) {
    int objects = 0;
    ListingLog log([&] { ++objects; });
    for (const auto& [function, text] : {asksForFolder, describes, describes, getsNoFolder})
        log.read(function, text);
    EXPECT_EQ(objects, 2);
}

}  // namespace
}  // namespace bildkurier
