// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DisplayCheck.h"

#include <QByteArrayView>
#include <QtGlobal>
#include <cstdio>
#include <cstdlib>

namespace bildkurier {

namespace {

QtMessageHandler usualHandler = nullptr;

void handle(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type == QtFatalMsg) {
        std::fputs(
            "Das Fenster lässt sich nicht öffnen: kein Bildschirm gefunden (DISPLAY, "
            "WAYLAND_DISPLAY).\nOhne Bildschirm importiert bildkurier-cli.\n",
            stderr);
        std::_Exit(EXIT_FAILURE);
    }
    // How each kind of display was tried is of no use to people, and in English.
    if (!QByteArrayView(context.category).startsWith("qt.qpa.")) usualHandler(type, context, text);
}

}  // namespace

DisplayCheck::DisplayCheck() { usualHandler = qInstallMessageHandler(handle); }

DisplayCheck::~DisplayCheck() { qInstallMessageHandler(usualHandler); }

}  // namespace bildkurier
