// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "FakeFileChooser.h"

#include <QDBusError>
#include <QTimer>

namespace bildkurier {

namespace {

const auto desktop = QStringLiteral("desktop of the test");
const auto application = QStringLiteral("application of the test");
const auto service = QStringLiteral("org.freedesktop.portal.Desktop");
const auto path = QStringLiteral("/org/freedesktop/portal/desktop");

/// A connection to the bus that is the session's now: the usual ones keep to the first.
QDBusConnection connection(const QString& name) {
    return QDBusConnection::connectToBus(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), name);
}

}  // namespace

FakeFileChooser::FakeFileChooser() : bus_(connection(desktop)) {
    bus_.registerObject(path, this,
                        QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllProperties);
    bus_.registerService(service);
}

FakeFileChooser::~FakeFileChooser() {
    QDBusConnection::disconnectFromBus(application);
    QDBusConnection::disconnectFromBus(desktop);
}

QDBusConnection FakeFileChooser::bus() { return connection(application); }

QDBusObjectPath FakeFileChooser::OpenFile(const QString& /*parent*/, const QString& /*title*/,
                                          const QVariantMap& options, const QDBusMessage& call) {
    asked = options;
    const QString sender = call.service().mid(1).replace(u'.', u'_');
    request_ = path + "/request/" + sender + "/" + options.value("handle_token").toString();
    if (refuses) {
        call.setDelayedReply(true);
        bus_.send(call.createErrorReply(QDBusError::Failed, "no backend"));
    } else {
        QTimer::singleShot(0, this, [this] { act(); });
    }
    return QDBusObjectPath(request_);
}

void FakeFileChooser::answer(uint response, const QStringList& uris) const {
    auto signal =
        QDBusMessage::createSignal(request_, "org.freedesktop.portal.Request", "Response");
    signal << response << QVariantMap{{"uris", uris}};
    bus_.send(signal);
}

void FakeFileChooser::vanish() { bus_.unregisterService(service); }

}  // namespace bildkurier
