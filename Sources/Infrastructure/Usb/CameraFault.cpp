// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "CameraFault.h"

#include <gphoto2/gphoto2.h>

namespace bildkurier {

CameraFault cameraFault(int code) {
    if (code >= GP_OK) return CameraFault::None;
    switch (code) {
        case GP_ERROR_CANCEL:
            return CameraFault::Cancelled;
        case GP_ERROR_IO_USB_FIND:
            return CameraFault::Gone;
        case GP_ERROR:
        case GP_ERROR_IO:
        case GP_ERROR_TIMEOUT:
        case GP_ERROR_IO_READ:
        case GP_ERROR_IO_WRITE:
        case GP_ERROR_IO_USB_CLEAR_HALT:
        case GP_ERROR_CORRUPTED_DATA:
        case GP_ERROR_DIRECTORY_NOT_FOUND:
            return CameraFault::Transfer;
        case GP_ERROR_IO_USB_CLAIM:
        case GP_ERROR_IO_LOCK:
        case GP_ERROR_CAMERA_BUSY:
            return CameraFault::Busy;
        case GP_ERROR_FILE_NOT_FOUND:
            return CameraFault::Missing;
        case GP_ERROR_NOT_SUPPORTED:
            return CameraFault::NotOffered;
        case GP_ERROR_MODEL_NOT_FOUND:
        case GP_ERROR_UNKNOWN_PORT:
            return CameraFault::Unsupported;
        default:
            return CameraFault::Other;
    }
}

}  // namespace bildkurier
