// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Symbol.h"

#include <QFile>
#include <QPainter>

namespace bildkurier {

Symbol::Symbol(QQuickItem* parent) : QQuickPaintedItem(parent) {
    setImplicitSize(16, 16);
    setAntialiasing(true);
}

void Symbol::setName(const QString& name) {
    if (name_ == name) return;
    name_ = name;
    load();
}

void Symbol::setColor(const QColor& color) {
    if (color_ == color) return;
    color_ = color;
    load();
}

void Symbol::load() {
    QFile file(QStringLiteral(":/bildkurier/Symbols/%1.svg").arg(name_));
    if (!name_.isEmpty() && file.open(QIODevice::ReadOnly)) {
        drawing_.load(file.readAll().replace("currentColor", color_.name().toLatin1()));
    }
    emit changed();
    update();
}

void Symbol::paint(QPainter* painter) {
    if (!drawing_.isValid()) return;
    painter->setOpacity(color_.alphaF());
    drawing_.render(painter, boundingRect());
}

}  // namespace bildkurier
