// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SingleInstance.h"

#include <QDir>
#include <QFile>
#include <QLocalSocket>

namespace bildkurier {

namespace {

constexpr int connectTimeout = 2000;  // milliseconds

}  // namespace

SingleInstance::SingleInstance(const std::string& folder)
    : name_(QFile::decodeName(QByteArray::fromStdString(folder)) + "/window"),
      lock_(name_ + ".lock") {
    QDir().mkpath(QFile::decodeName(QByteArray::fromStdString(folder)));
    lock_.setStaleLockTime(0);
    // Where no lock can be had, for want of the folder, every window is the first.
    if (lock_.tryLock(0)) listen();
    if (!isFirst()) tellFirst();
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

void SingleInstance::tellFirst() const {
    QLocalSocket first;
    first.connectToServer(name_);
    first.waitForConnected(connectTimeout);
}

}  // namespace bildkurier
