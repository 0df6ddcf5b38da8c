// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

// That system's choice among types of 64 bits, ahead of this one's.
typedef long long int64_t;
typedef unsigned long long uint64_t;
typedef long long off_t;
#define __DEFINED_int64_t
#define __DEFINED_uint64_t
#define __DEFINED_off_t
