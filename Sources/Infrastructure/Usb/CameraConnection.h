// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "CameraFault.h"
#include "GphotoCamera.h"
#include "Result.h"
#include "UsbBus.h"
#include "UsbPlace.h"
#include "UsbSession.h"
#include "UsbTiming.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace bildkurier {

/// A camera that is opened, used and brought back into step when something fails. The camera's
/// own thread.
class CameraConnection {
public:
    /// Has a program of the desktop let go of the camera, at the latest until the session ends.
    using Release = std::function<void(const UsbPlace&, const UsbSession&)>;

    CameraConnection(UsbPlace place, UsbBus bus, UsbTiming timing, Release release);

    const UsbPlace& place() const { return place_; }
    GphotoCamera& camera() { return camera_; }
    /// The camera to ask something. After a fault, or after it was told to stop, it may still
    /// answer what was asked before, and the library passes over things, so that it is opened anew
    /// first. Where that fails, what is asked does too.
    GphotoCamera& cameraInStep();

    /// What the library knows of its files is not to be believed any more.
    void distrust() { isInStep_ = false; }

    /// Whether the camera is open, and what the library knows of it can be believed.
    bool isInStep() const { return isInStep_; }

    /// How often it was opened; whoever opens it anew does not hear what it had to tell.
    int openings() const { return openings_; }

    /// For people.
    std::string name() const;

    /// Opens the camera for `session`; has other programs let go of it. Fails with a reason for
    /// the user, also when the session ends first.
    Result<> open(std::shared_ptr<const UsbSession> session);
    /// Opens the camera to ask it something, but not to list it, unless another program uses it:
    /// that one is left alone.
    bool openIfFree();
    void close();

    /// What an answer of the camera's means, once it is clear whether it was unplugged. Every
    /// answer comes here.
    CameraFault fault(int code);
    /// Leaves a camera that was busy some time, more of it after more `tries`. Whether it is worth
    /// another; not once the session has ended.
    bool waitWhileBusy(std::size_t tries) const;

private:
    CameraFault openOnce();
    CameraFault opened(int answer);
    Error openError(CameraFault fault, int code) const;

    UsbPlace place_;
    UsbBus bus_;
    UsbTiming timing_;
    Release release_;
    std::shared_ptr<const UsbSession> session_;  ///< null while closed
    GphotoCamera camera_;
    bool isInStep_ = true;
    int openings_ = 0;
    int answer_ = 0;  ///< of the last attempt to open
};

}  // namespace bildkurier
