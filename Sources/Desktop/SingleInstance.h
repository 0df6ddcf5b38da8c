// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QObject>
#include <chrono>
#include <functional>
#include <string>

namespace bildkurier {

/// Makes sure that the user has one window: the first program to come is told when another one
/// is started, which should then end.
class SingleInstance {
public:
    /// `folder` is the user's own, for what matters only while processes run. Where there is
    /// another one, `token` is passed on to it, and this waits so long for its answer.
    explicit SingleInstance(const std::string& folder, const std::string& token = {},
                            std::chrono::milliseconds patience = std::chrono::seconds(2));

    /// False when there is another one already.
    bool isFirst() const { return lock_.error() != QLockFile::LockFailedError; }
    /// Whether that one has answered.
    bool hasToldFirst() const { return hasToldFirst_; }

    /// Called with its token whenever another one is started.
    std::function<void(const std::string& token)> onAnother = [](const std::string&) {};

private:
    void listen();
    void hear(QLocalSocket& caller);
    bool tellFirst(const std::string& token, std::chrono::milliseconds patience) const;

    QString name_;
    QLockFile lock_;
    QLocalServer server_;
    bool hasToldFirst_ = false;
};

}  // namespace bildkurier
