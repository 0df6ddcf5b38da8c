// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <functional>

namespace bildkurier {

/// A desktop that shows dialogs for applications on the session bus, for as long as this lives.
class FakeFileChooser : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.FileChooser")
    Q_PROPERTY(uint version MEMBER version)

public:
    FakeFileChooser();
    ~FakeFileChooser() override;
    FakeFileChooser(const FakeFileChooser&) = delete;
    FakeFileChooser& operator=(const FakeFileChooser&) = delete;

    /// The application's connection to the same bus.
    static QDBusConnection bus();

    uint version = 4;
    bool refuses = false;
    QVariantMap asked;  ///< what the last dialog was to be like
    /// What the user does with a dialog.
    std::function<void()> act = [] {};

    /// Answers the last one: 0 for confirmed, 1 for cancelled.
    void answer(uint response, const QStringList& uris) const;
    void vanish();

public slots:
    QDBusObjectPath OpenFile(const QString& parent, const QString& title,
                             const QVariantMap& options, const QDBusMessage& call);

private:
    QDBusConnection bus_;
    QString request_;
};

}  // namespace bildkurier
