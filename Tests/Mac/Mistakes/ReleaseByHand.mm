// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: declares the selector 'retain'
#import <ImageCaptureCore/ImageCaptureCore.h>

void keep(ICCameraDevice* camera) { [camera retain]; }
