// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>

/// Draws an icon in every size that desktops want: IconSizes ICON.svg FOLDER makes
/// FOLDER/48x48/apps/ICON.png and the like.
int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const QString drawing = QString::fromLocal8Bit(argv[1]);
    QSvgRenderer renderer(drawing);
    if (!renderer.isValid()) return 1;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256, 512}) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        renderer.render(&painter);
        painter.end();
        const QString folder =
            QStringLiteral("%1/%2x%2/apps").arg(QString::fromLocal8Bit(argv[2])).arg(size);
        const QString name = QFileInfo(drawing).completeBaseName();
        if (!QDir().mkpath(folder) || !image.save(folder + "/" + name + ".png")) return 1;
    }
    return 0;
}
