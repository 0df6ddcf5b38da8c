// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Handle.h"
#include "SSHKeyModel.h"

#include <QtQml/qqmlregistration.h>

#include <QObject>
#include <QString>
#include <QTimer>
#include <memory>

namespace bildkurier {

/// The application's key as QML sees it. Main thread.
class KeyBridge final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")

    Q_PROPERTY(bool hasKey READ hasKey NOTIFY changed)
    Q_PROPERTY(QString publicKey READ publicKey NOTIFY changed)
    Q_PROPERTY(QString fingerprint READ fingerprint NOTIFY changed)
    Q_PROPERTY(QString explanation READ explanation NOTIFY changed)
    Q_PROPERTY(QString message READ message NOTIFY changed)
    Q_PROPERTY(bool failed READ failed NOTIFY changed)
    Q_PROPERTY(bool busy READ busy NOTIFY changed)

public:
    explicit KeyBridge(std::shared_ptr<SSHKeyModel> model);

    bool hasKey() const { return model_->hasKey(); }
    QString publicKey() const;
    QString fingerprint() const;
    /// How to log in without a key of the application's own.
    QString explanation() const;
    QString message() const;
    bool failed() const { return model_->failed(); }
    bool busy() const { return model_->busy(); }

    Q_INVOKABLE void generate();
    Q_INVOKABLE void importKey();
    Q_INVOKABLE void removeKey();
    /// Puts the public key on the clipboard, in place of what was there.
    Q_INVOKABLE void copyPublicKey() const;

signals:
    void changed();

private:
    std::shared_ptr<SSHKeyModel> model_;
    QTimer notice_;
    Handle observation_;
};

}  // namespace bildkurier
