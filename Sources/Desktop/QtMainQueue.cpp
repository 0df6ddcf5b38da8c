// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "QtMainQueue.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <chrono>
#include <memory>
#include <utility>

namespace bildkurier {

namespace {

class TaskEvent final : public QEvent {
public:
    explicit TaskEvent(Task task) : QEvent(User), task_(std::move(task)) {}

    void run() const { task_(); }

private:
    Task task_;
};

class TaskRunner final : public QObject {
protected:
    void customEvent(QEvent* event) override { static_cast<TaskEvent*>(event)->run(); }
};

}  // namespace

QtMainQueue::QtMainQueue() : runner_(std::make_unique<TaskRunner>()) {}

void QtMainQueue::post(Task task) {
    QCoreApplication::postEvent(runner_.get(), new TaskEvent(std::move(task)));
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
