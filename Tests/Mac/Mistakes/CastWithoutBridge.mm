// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: requires a bridged cast
#import <ImageCaptureCore/ImageCaptureCore.h>

const void* key(ICCameraDevice* camera) { return (const void*)camera; }
