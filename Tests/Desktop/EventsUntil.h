// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <chrono>

namespace bildkurier {

/// Handles events until `condition` holds; false if it never does.
template <class Condition>
bool eventsUntil(Condition condition) {
    const QDeadlineTimer deadline(std::chrono::seconds(20));
    while (!condition() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    return condition();
}

}  // namespace bildkurier
