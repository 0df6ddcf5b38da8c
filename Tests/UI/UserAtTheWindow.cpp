// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "UserAtTheWindow.h"

#include <unicode/errorcode.h>
#include <unicode/locid.h>

#include <QQuickWindow>

namespace bildkurier {

void becomeUserInBerlin() {
    qputenv("TZ", "Europe/Berlin");
    icu::ErrorCode status;
    icu::Locale::setDefault(icu::Locale::getGermany(), status);
    QQuickWindow::setSceneGraphBackend(QStringLiteral("software"));
}

}  // namespace bildkurier
