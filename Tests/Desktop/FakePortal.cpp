// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakePortal.h"

namespace bildkurier {

namespace {

const auto busName = QStringLiteral("portal of the test");
const auto appearanceGroup = QStringLiteral("org.freedesktop.appearance");

}  // namespace

FakePortal::FakePortal()
    : bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, busName)) {
    isThere_ =
        bus_.registerObject("/org/freedesktop/portal/desktop", this,
                            QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals) &&
        bus_.registerService("org.freedesktop.portal.Desktop");
}

FakePortal::~FakePortal() { QDBusConnection::disconnectFromBus(busName); }

QDBusVariant FakePortal::Read(const QString& group, const QString& key) const {
    const bool isAsked = group == appearanceGroup && key == "color-scheme";
    // As portals do: a variant in a variant.
    return QDBusVariant(QVariant::fromValue(QDBusVariant(isAsked ? colorScheme : 0U)));
}

void FakePortal::change(const QString& key, uint value) {
    if (key == "color-scheme") colorScheme = value;
    emit SettingChanged(appearanceGroup, key, QDBusVariant(value));
}

}  // namespace bildkurier
