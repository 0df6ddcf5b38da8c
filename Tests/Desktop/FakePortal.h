// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace bildkurier {

/// A desktop that says on the session bus how it wants to look, for as long as this lives.
class FakePortal : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    FakePortal();
    ~FakePortal() override;
    FakePortal(const FakePortal&) = delete;
    FakePortal& operator=(const FakePortal&) = delete;

    bool isThere() const { return isThere_; }

    uint colorScheme = 0;

    /// Tells everyone of the new value of a setting of appearance.
    void change(const QString& key, uint value);

public slots:
    QDBusVariant Read(const QString& group, const QString& key) const;

signals:
    void SettingChanged(const QString& group, const QString& key, const QDBusVariant& value);

private:
    QDBusConnection bus_;
    bool isThere_ = false;
};

}  // namespace bildkurier
