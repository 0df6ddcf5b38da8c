// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: no visible @interface for 'ICCameraDevice' declares the selector
// 'requestOpenSessionNow'
#import <ImageCaptureCore/ImageCaptureCore.h>

void open(ICCameraDevice* camera) { [camera requestOpenSessionNow]; }
