// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <cstdint>

namespace bildkurier {

/// What a call of libgphoto2 came to.
enum class CameraFault : std::uint8_t {
    None,
    Cancelled,
    Gone,         ///< unplugged
    Transfer,     ///< out of step or silent, maybe unplugged; may work again once opened anew
    Busy,         ///< another program holds the camera
    Missing,      ///< there is no such file, or it was passed over
    NotOffered,   ///< the camera does not hand this out in this way
    Unsupported,  ///< not a camera that the library knows
    Other,
};

/// `code` is what the library answered.
CameraFault cameraFault(int code);

}  // namespace bildkurier
