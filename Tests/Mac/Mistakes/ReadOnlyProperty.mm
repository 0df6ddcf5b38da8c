// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: assignment to readonly property
#import <ImageCaptureCore/ImageCaptureCore.h>

void rename(ICDevice* device) { device.name = @"Kamera"; }
