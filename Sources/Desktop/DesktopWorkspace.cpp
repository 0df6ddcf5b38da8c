// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "DesktopWorkspace.h"

#include <QDesktopServices>
#include <QFile>
#include <QUrl>

namespace bildkurier {

void DesktopWorkspace::open(const Url& folder) {
    const QByteArray path = QByteArray::fromStdString(folder.path);
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFile::decodeName(path)));
}

}  // namespace bildkurier
