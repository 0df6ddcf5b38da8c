// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QDeadlineTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QObject>
#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace bildkurier {

/// Makes sure that the user has one window: the first program to come is told when another one
/// is started, which should then end. One that waits for the first when that lets go, or ends,
/// takes its place.
class SingleInstance {
public:
    static constexpr std::chrono::milliseconds patienceByDefault = std::chrono::seconds(10);

    /// `folder` is the user's own, for what matters only while processes run. Where there is
    /// another one, `token` is passed on to it, and this waits so long for its answer, which can
    /// take a while where that one is only starting.
    explicit SingleInstance(const std::string& folder, const std::string& token = {},
                            std::chrono::milliseconds patience = patienceByDefault);

    /// False when there is another one already.
    bool isFirst() const { return lock_.error() != QLockFile::LockFailedError; }
    /// Whether that one has answered.
    bool hasToldFirst() const { return hasToldFirst_; }

    /// Leaves it to others to be the first: the window is closed, whatever is left to be done.
    void letGo();

    /// Called with its token whenever another one is started.
    std::function<void(const std::string& token)> onAnother = [](const std::string&) {};

private:
    bool becomeFirst();
    void listen();
    void hear(QLocalSocket& caller);
    bool tellFirst(const std::string& token, const QDeadlineTimer& deadline) const;

    QString name_;
    QLockFile lock_;
    std::unique_ptr<QLocalServer> server_;
    bool hasToldFirst_ = false;
};

}  // namespace bildkurier
