// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: different enumeration types
#import <ImageCaptureCore/ImageCaptureCore.h>

void browse(ICDeviceBrowser* browser) {
    browser.browsedDeviceTypeMask = ICDeviceTypeMaskCamera | ICDeviceLocationTypeMaskLocal;
}
