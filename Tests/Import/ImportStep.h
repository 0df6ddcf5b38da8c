// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>
#include <iosfwd>

namespace bildkurier {

/// One thing that happens to an import model.
struct ImportStep {
    enum class Event : std::uint8_t {
        // Cameras
        plugIn,
        unplug,
        connect,
        replug,
        tellLate,
        identify,
        openSession,
        refuseSession,
        catalogReady,
        cardChanges,
        // Downloads
        deliver,
        deliverAll,
        fail,
        truncate,
        grow,
        answerLate,
        // The user
        select,
        start,
        cancel,
        reload,
        toggleFilter,
        moveSlider,
        switchAutoImport,
        chooseFolder,
        changeLayout,
        // Time
        advance,
        stepMain,
        stepBackground,
        settle,
        // The destination
        loseGrant,
        changeCapacity,
        storeFails,
        storeRecovers,
        removeFile,
        addFile,
        // The server
        fillForm,
        applyServer,
        checkServer,
        forgetServer,
        switchKind,
        changeHostKey,
        refuseConnections,
        breakListings,
        changeOwnKey,
        // The camera to trust, other processes, and a slow destination
        expectCamera,
        anotherProcess,
        duringMove,
        // The log
        fillLog,
    };

    Event event = Event::plugIn;
    int which = 0;  ///< 0 to 11: which camera, file or the like
};

std::ostream& operator<<(std::ostream& out, const ImportStep& step);

}  // namespace bildkurier
