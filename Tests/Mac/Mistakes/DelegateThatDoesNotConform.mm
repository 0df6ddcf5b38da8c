// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: incompatible pointer types assigning to 'id<ICDeviceDelegate>
#import <ImageCaptureCore/ImageCaptureCore.h>

void listen(ICDevice* device, NSObject* listener) { device.delegate = listener; }
