// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SingleInstance.h"

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QThread>

namespace bildkurier {

namespace {

constexpr auto heard = "!";

}  // namespace

SingleInstance::SingleInstance(const std::string& folder, const std::string& token,
                               std::chrono::milliseconds patience)
    : name_(QFile::decodeName(QByteArray::fromStdString(folder)) + "/window"),
      lock_(name_ + ".lock") {
    QDir().mkpath(QFile::decodeName(QByteArray::fromStdString(folder)));
    lock_.setStaleLockTime(0);
    const QDeadlineTimer deadline(patience);
    while (!becomeFirst()) {
        hasToldFirst_ = tellFirst(token, deadline);
        if (hasToldFirst_ || deadline.hasExpired()) return;
        // It may be about to listen, or to end.
        QThread::msleep(50);
    }
}

/// Where no lock can be had, for want of the folder, every window is the first.
bool SingleInstance::becomeFirst() {
    if (lock_.tryLock(0)) listen();
    return isFirst();
}

void SingleInstance::listen() {
    QLocalServer::removeServer(name_);
    server_ = std::make_unique<QLocalServer>();
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(server_.get(), &QLocalServer::newConnection, server_.get(), [this] {
        while (auto* caller = server_->nextPendingConnection()) hear(*caller);
    });
    server_->listen(name_);
}

void SingleInstance::letGo() {
    // With those who have not been answered yet: they are to try again.
    server_.reset();
    lock_.unlock();
}

void SingleInstance::hear(QLocalSocket& caller) {
    QObject::connect(&caller, &QLocalSocket::disconnected, &caller, &QObject::deleteLater);
    QObject::connect(&caller, &QLocalSocket::readyRead, server_.get(), [this, &caller] {
        if (!caller.canReadLine()) return;
        const auto token = caller.readLine().chopped(1).toStdString();
        caller.write(heard);
        onAnother(token);
    });
}

bool SingleInstance::tellFirst(const std::string& token, const QDeadlineTimer& deadline) const {
    const auto timeLeft = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
    QLocalSocket first;
    first.connectToServer(name_);
    if (!first.waitForConnected(timeLeft())) return false;
    first.write(QByteArray::fromStdString(token) + '\n');
    return first.waitForReadyRead(timeLeft()) && first.readAll() == heard;
}

}  // namespace bildkurier
