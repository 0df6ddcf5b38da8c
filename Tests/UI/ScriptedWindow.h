// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "WindowScript.h"

#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace bildkurier {

/// The application's window for a script that has begun.
class ScriptedWindow {
public:
    /// Throws where the window cannot be made.
    ScriptedWindow(WindowScript& script, int height);

    QQuickWindow& operator*() const { return *window_; }
    QQuickWindow* operator->() const { return window_; }

private:
    QQmlApplicationEngine engine_;
    QQuickWindow* window_ = nullptr;
};

}  // namespace bildkurier
