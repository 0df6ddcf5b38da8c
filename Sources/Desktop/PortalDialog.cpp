// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "PortalDialog.h"

#include "DesktopPortal.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QStringList>
#include <QUuid>
#include <QWindow>
#include <utility>

namespace bildkurier {

namespace {

const auto fileChooser = QStringLiteral("org.freedesktop.portal.FileChooser");

const auto requestInterface = QStringLiteral("org.freedesktop.portal.Request");

constexpr int patience = 5000;  // milliseconds
constexpr uint firstWithFolders = 3;
constexpr int noPortal = 2;  // beside accepted and rejected

/// The window in front of which the dialog belongs, as portals name windows.
QString parentWindow() {
    const QWindow* window = QGuiApplication::focusWindow();
    if (window == nullptr || QGuiApplication::platformName() != "xcb") return {};
    return QStringLiteral("x11:%1").arg(window->winId(), 0, 16);
}

/// Names of files are bytes.
std::optional<Url> fileAt(const QString& uri) {
    constexpr qsizetype scheme = 7;  // file://
    const auto begin = uri.indexOf(u'/', scheme);
    if (!uri.startsWith("file://") || begin < 0) return std::nullopt;
    return Url::file(QByteArray::fromPercentEncoding(uri.mid(begin).toUtf8()).toStdString());
}

}  // namespace

PortalDialog::PortalDialog(QDBusConnection bus, Question question)
    : bus_(std::move(bus)),
      question_(std::move(question)),
      token_("bildkurier" + QUuid::createUuid().toString(QUuid::Id128)) {
    setAttribute(Qt::WA_DontShowOnScreen);
    setWindowModality(Qt::ApplicationModal);
    auto* presence = new QDBusServiceWatcher(portalService, bus_,
                                             QDBusServiceWatcher::WatchForUnregistration, this);
    connect(presence, &QDBusServiceWatcher::serviceUnregistered, this, [this] { done(noPortal); });
}

std::expected<std::optional<Url>, PortalDialog::NoPortal> PortalDialog::ask() {
    if (!bus_.isConnected()) return std::unexpected(NoPortal());
    askForVersion();
    if (exec() == noPortal) {
        // It may yet answer, and nobody waits for its dialog any more.
        withdraw();
        return std::unexpected(NoPortal());
    }
    return choice_;
}

void PortalDialog::askForVersion() {
    auto call = QDBusMessage::createMethodCall(
        portalService, portalPath, "org.freedesktop.DBus.Properties", QStringLiteral("Get"));
    call << fileChooser << QStringLiteral("version");
    send(call, [this](const QDBusMessage& reply) {
        const uint version = reply.arguments().value(0).value<QDBusVariant>().variant().toUInt();
        if (version < (question_.forFolder ? firstWithFolders : 1)) return done(noPortal);
        openFile();
    });
}

void PortalDialog::openFile() {
    bus_.connect(portalService, request(), requestInterface, QStringLiteral("Response"), this,
                 SLOT(answered(uint, QVariantMap)));
    auto call = QDBusMessage::createMethodCall(portalService, portalPath, fileChooser,
                                               QStringLiteral("OpenFile"));
    call << parentWindow() << question_.accept << options();
    send(call, [](const QDBusMessage&) {});
}

QString PortalDialog::request() const {
    const QString sender = bus_.baseService().mid(1).replace(u'.', u'_');
    return portalPath + "/request/" + sender + "/" + token_;
}

void PortalDialog::withdraw() const {
    auto call = QDBusMessage::createMethodCall(portalService, request(), requestInterface,
                                               QStringLiteral("Close"));
    call.setAutoStartService(false);
    bus_.send(call);
}

QVariantMap PortalDialog::options() const {
    // With the byte that ends it.
    const QByteArray folder(question_.start.path.c_str(),
                            static_cast<qsizetype>(question_.start.path.size()) + 1);
    // Hidden files are shown as the desktop shows them: no option says otherwise.
    return {{"handle_token", token_},
            {"accept_label", question_.accept},
            {"modal", true},
            {"directory", question_.forFolder},
            {"current_folder", folder}};
}

void PortalDialog::send(const QDBusMessage& call,
                        const std::function<void(const QDBusMessage&)>& then) {
    auto* reply = new QDBusPendingCallWatcher(bus_.asyncCall(call, patience), this);
    connect(reply, &QDBusPendingCallWatcher::finished, this,
            [this, then](QDBusPendingCallWatcher* finished) {
                if (finished->isError()) return done(noPortal);
                then(finished->reply());
            });
}

void PortalDialog::answered(uint response, const QVariantMap& results) {
    constexpr uint confirmed = 0;
    // Of the other answers, desktops do not tell apart whether a dialog was cancelled or closed.
    const QStringList uris = results.value("uris").toStringList();
    if (response == confirmed && !uris.isEmpty()) choice_ = fileAt(uris.constFirst());
    done(choice_ ? Accepted : Rejected);
}

}  // namespace bildkurier
