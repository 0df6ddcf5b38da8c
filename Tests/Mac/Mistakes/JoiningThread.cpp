// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: no type named 'jthread' in namespace 'std'|no member named 'jthread'
#include <thread>

void run(std::jthread thread);
