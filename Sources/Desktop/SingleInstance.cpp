// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SingleInstance.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QLocalSocket>
#include <QThread>
#include <chrono>

namespace bildkurier {

namespace {

constexpr std::chrono::seconds answerTime{3};

}  // namespace

SingleInstance::SingleInstance(const std::string& folder)
    : name_(QFile::decodeName(QByteArray::fromStdString(folder)) + "/window"),
      lock_(name_ + ".lock") {
    QDir().mkpath(QFile::decodeName(QByteArray::fromStdString(folder)));
    lock_.setStaleLockTime(0);
    // Where no lock can be had, for want of the folder, every window is the first.
    if (lock_.tryLock(0)) listen();
    if (!isFirst()) hasToldFirst_ = tellFirst();
}

void SingleInstance::listen() {
    QLocalServer::removeServer(name_);
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] {
        while (auto* caller = server_.nextPendingConnection()) caller->deleteLater();
        onAnother();
    });
    server_.listen(name_);
}

bool SingleInstance::tellFirst() const {
    const QDeadlineTimer deadline(answerTime);
    QLocalSocket first;
    do {
        first.connectToServer(name_);
        if (first.waitForConnected(static_cast<int>(deadline.remainingTime()))) return true;
        // It may be about to listen.
        QThread::msleep(50);
    } while (!deadline.hasExpired());
    return false;
}

}  // namespace bildkurier
