// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include <QtQml/qqmlregistration.h>

#include <QColor>
#include <QQuickPaintedItem>
#include <QString>
#include <QSvgRenderer>

namespace bildkurier {

/// One of the window's drawings in one colour, sharp at every scale.
class Symbol : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)

public:
    explicit Symbol(QQuickItem* parent = nullptr);

    const QString& name() const { return name_; }
    void setName(const QString& name);
    const QColor& color() const { return color_; }
    void setColor(const QColor& color);

    void paint(QPainter* painter) override;

signals:
    void changed();

private:
    void load();

    QString name_;
    QColor color_ = Qt::black;
    QSvgRenderer drawing_;
};

}  // namespace bildkurier
