// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: incompatible pointer types initializing 'ICCameraFile
#import <ImageCaptureCore/ImageCaptureCore.h>

ICCameraFile* first(ICCameraDevice* camera) {
    ICCameraFile* file = camera.mediaFiles[0];
    return file;
}
