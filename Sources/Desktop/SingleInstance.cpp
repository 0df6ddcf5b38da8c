// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SingleInstance.h"

#include <QByteArray>
#include <QDeadlineTimer>
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
    // Where no lock can be had, for want of the folder, every window is the first.
    if (lock_.tryLock(0)) listen();
    if (!isFirst()) hasToldFirst_ = tellFirst(token, patience);
}

void SingleInstance::listen() {
    QLocalServer::removeServer(name_);
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] {
        while (auto* caller = server_.nextPendingConnection()) hear(*caller);
    });
    server_.listen(name_);
}

void SingleInstance::hear(QLocalSocket& caller) {
    QObject::connect(&caller, &QLocalSocket::disconnected, &caller, &QObject::deleteLater);
    QObject::connect(&caller, &QLocalSocket::readyRead, &server_, [this, &caller] {
        if (!caller.canReadLine()) return;
        const auto token = caller.readLine().chopped(1).toStdString();
        caller.write(heard);
        onAnother(token);
    });
}

bool SingleInstance::tellFirst(const std::string& token, std::chrono::milliseconds patience) const {
    const QDeadlineTimer deadline(patience);
    const auto timeLeft = [&deadline] { return static_cast<int>(deadline.remainingTime()); };
    QLocalSocket first;
    do {
        first.connectToServer(name_);
        if (first.waitForConnected(timeLeft())) {
            first.write(QByteArray::fromStdString(token) + '\n');
            return first.waitForReadyRead(timeLeft()) && first.readAll() == heard;
        }
        // It may be about to listen.
        QThread::msleep(50);
    } while (!deadline.hasExpired());
    return false;
}

}  // namespace bildkurier
