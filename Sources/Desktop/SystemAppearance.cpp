// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SystemAppearance.h"

#include "DesktopPortal.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <QPalette>

namespace bildkurier {

namespace {

const auto portalSettings = QStringLiteral("org.freedesktop.portal.Settings");
const auto group = QStringLiteral("org.freedesktop.appearance");
const auto key = QStringLiteral("color-scheme");

/// What lies in an answer, however often it was wrapped.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>()) value = value.value<QDBusVariant>().variant();
    return value;
}

SystemAppearance::Preference preference(const QVariant& value) {
    switch (unwrapped(value).toUInt()) {
        case 1:
            return SystemAppearance::Preference::dark;
        case 2:
            return SystemAppearance::Preference::light;
        default:
            return SystemAppearance::Preference::none;
    }
}

QPalette darkPalette() {
    const QColor text(0xf3, 0xf3, 0xf5);
    QPalette palette(text, QColor(0x3b, 0x3b, 0x3f), QColor(0x5b, 0x5b, 0x61),
                     QColor(0x14, 0x14, 0x16), QColor(0x2a, 0x2a, 0x2d), text, QColor(Qt::white),
                     QColor(0x2a, 0x2a, 0x2d), QColor(0x1e, 0x1e, 0x20));
    palette.setColor(QPalette::Highlight, QColor(0x1b, 0x6f, 0xd8));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Link, QColor(0x4a, 0x9b, 0xff));
    palette.setColor(QPalette::PlaceholderText, QColor(0xa4, 0xa4, 0xac));
    return palette;
}

QPalette lightPalette() {
    QPalette palette(QColor(0xf2, 0xf2, 0xf5));
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Highlight, QColor(0x0a, 0x6c, 0xdf));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

}  // namespace

SystemAppearance::SystemAppearance() {
    // Slots with variants can be connected only after this.
    qDBusRegisterMetaType<QDBusVariant>();
    QDBusConnection::sessionBus().connect(portalService, portalPath, portalSettings,
                                          QStringLiteral("SettingChanged"), this,
                                          SLOT(settingChanged(QString, QString, QDBusVariant)));
    ask();
}

void SystemAppearance::ask() {
    auto question =
        QDBusMessage::createMethodCall(portalService, portalPath, portalSettings, "Read");
    question << group << key;
    auto* answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [](QDBusPendingCallWatcher* done) {
        const QDBusPendingReply<QVariant> reply = *done;
        if (!reply.isError()) apply(preference(reply.value()));
        done->deleteLater();
    });
}

void SystemAppearance::settingChanged(const QString& changedGroup, const QString& changedKey,
                                      const QDBusVariant& value) {
    if (changedGroup == group && changedKey == key) apply(preference(value.variant()));
}

void SystemAppearance::apply(Preference preference) {
    switch (preference) {
        case Preference::none:
            return QGuiApplication::setPalette({});
        case Preference::dark:
            return QGuiApplication::setPalette(darkPalette());
        case Preference::light:
            return QGuiApplication::setPalette(lightPalette());
    }
}

}  // namespace bildkurier
