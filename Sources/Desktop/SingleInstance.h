// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <functional>
#include <string>

namespace bildkurier {

/// Makes sure that the user has one window: the first program to come is told when another one
/// is started, which should then end.
class SingleInstance {
public:
    /// `folder` is the user's own, for what matters only while processes run.
    explicit SingleInstance(const std::string& folder);

    /// False when there is another one already.
    bool isFirst() const { return lock_.error() != QLockFile::LockFailedError; }
    /// Whether that one has been told of this one.
    bool hasToldFirst() const { return hasToldFirst_; }

    /// Called whenever another one is started.
    std::function<void()> onAnother = [] {};

private:
    void listen();
    bool tellFirst() const;

    QString name_;
    QLockFile lock_;
    QLocalServer server_;
    bool hasToldFirst_ = false;
};

}  // namespace bildkurier
