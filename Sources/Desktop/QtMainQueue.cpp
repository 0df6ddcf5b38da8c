// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "QtMainQueue.h"

#include <QMetaObject>
#include <QTimer>
#include <chrono>
#include <memory>
#include <utility>

namespace bildkurier {

void QtMainQueue::post(Task task) {
    QMetaObject::invokeMethod(&context_, std::move(task), Qt::QueuedConnection);
}

Handle QtMainQueue::after(Duration delay, Task task) {
    return schedule(delay, true, std::move(task));
}

Handle QtMainQueue::every(Duration interval, Task task) {
    return schedule(interval, false, std::move(task));
}

Handle QtMainQueue::schedule(Duration delay, bool once, Task task) {
    // The task itself may drop the handle: the timer then lives on until it has returned.
    const std::shared_ptr<QTimer> timer(new QTimer, [](QTimer* dropped) {
        dropped->stop();
        dropped->deleteLater();
    });
    timer->setSingleShot(once);
    QObject::connect(timer.get(), &QTimer::timeout, timer.get(), std::move(task));
    timer->start(std::chrono::ceil<std::chrono::milliseconds>(delay));
    return timer;
}

Instant QtMainQueue::now() const { return std::chrono::steady_clock::now(); }

Date QtMainQueue::date() const {
    return std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
}

}  // namespace bildkurier
