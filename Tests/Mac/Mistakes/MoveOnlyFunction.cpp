// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
// Rejected: no template named 'move_only_function'|no member named 'move_only_function'
#include <functional>

std::move_only_function<void()> task;
