// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: cannot initialize a parameter of type
#import <ImageCaptureCore/ImageCaptureCore.h>

void load(ICCameraFile* file) {
    [file requestDownloadWithOptions:nil
                          completion:^(NSError* error){
                          }];
}
