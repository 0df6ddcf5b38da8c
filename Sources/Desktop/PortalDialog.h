// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "Url.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDialog>
#include <QString>
#include <QVariantMap>
#include <expected>
#include <functional>
#include <optional>

namespace bildkurier {

/// The dialog for files and folders that a desktop shows for applications which ask its portal.
/// Nothing of this one is seen: it keeps the user from the windows until the portal has answered.
class PortalDialog final : public QDialog {
    Q_OBJECT

public:
    struct Question {
        Url start;       ///< the folder to show first
        QString accept;  ///< what the button says
        bool forFolder = false;
    };
    struct NoPortal {};

    PortalDialog(QDBusConnection bus, Question question);

    /// Blocks; none when the user has cancelled.
    std::expected<std::optional<Url>, NoPortal> ask();

private:
    void askForVersion();
    void openFile();
    Q_SLOT void answered(uint response, const QVariantMap& results);
    QVariantMap options() const;
    /// Where the portal answers, and hears that nobody waits any more.
    QString request() const;
    void withdraw() const;
    /// Calls `then` with the answer to `call`; without one there is no portal.
    void send(const QDBusMessage& call, const std::function<void(const QDBusMessage&)>& then);

    QDBusConnection bus_;
    Question question_;
    QString token_;
    std::optional<Url> choice_;
};

}  // namespace bildkurier
