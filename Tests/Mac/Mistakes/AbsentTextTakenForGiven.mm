// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: implicit conversion from nullable pointer
#import <ImageCaptureCore/ImageCaptureCore.h>

NSString* _Nonnull serial(ICCameraDevice* camera) { return camera.serialNumberString; }
