// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "ImportStep.h"

#include <array>
#include <ostream>

namespace bildkurier {

std::ostream& operator<<(std::ostream& out, const ImportStep& step) {
    static constexpr std::array names = {"plugIn",         "unplug",           "connect",
                                         "replug",         "tellLate",         "identify",
                                         "openSession",    "refuseSession",    "catalogReady",
                                         "cardChanges",    "deliver",          "deliverAll",
                                         "fail",           "truncate",         "grow",
                                         "answerLate",     "select",           "start",
                                         "cancel",         "reload",           "toggleFilter",
                                         "moveSlider",     "switchAutoImport", "chooseFolder",
                                         "changeLayout",   "advance",          "stepMain",
                                         "stepBackground", "settle",           "loseGrant",
                                         "changeCapacity", "storeFails",       "storeRecovers",
                                         "removeFile",     "addFile",          "fillForm",
                                         "applyServer",    "checkServer",      "forgetServer",
                                         "switchKind",     "changeHostKey",    "refuseConnections",
                                         "breakListings",  "changeOwnKey",     "expectCamera",
                                         "anotherProcess", "duringMove",       "fillLog"};
    return out << names.at(static_cast<std::size_t>(step.event)) << ' ' << step.which;
}

}  // namespace bildkurier
