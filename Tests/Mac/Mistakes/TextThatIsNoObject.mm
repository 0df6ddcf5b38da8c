// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: string literal must be prefixed by '@'
#import <Foundation/Foundation.h>

void name() { [[maybe_unused]] NSString* name = "IMG_1.JPG"; }
