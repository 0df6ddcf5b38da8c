// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

// Where that Foundation expects its compiler's own blocks.

#include <Block.h>
