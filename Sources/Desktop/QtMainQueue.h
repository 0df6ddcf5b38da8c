// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "MainQueue.h"

#include <QObject>
#include <memory>

class QTimer;

namespace bildkurier {

/// The main queue of a program with a window: Qt's event loop. Make it on the main thread. What
/// is still posted when it is destroyed is dropped.
class QtMainQueue final : public MainQueue {
public:
    QtMainQueue();
    void post(Task task) override;
    Handle after(Duration delay, Task task) override;
    Handle every(Duration interval, Task task) override;
    Instant now() const override;
    Date date() const override;

private:
    static Handle schedule(Duration delay, bool once, Task task);

    std::unique_ptr<QObject> runner_;
};

}  // namespace bildkurier
