// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#pragma once

#include "SpeedMeter.h"

#include <QtQml/qqmlregistration.h>

#include <QColor>
#include <QList>
#include <QObject>
#include <QString>
#include <optional>

namespace bildkurier {

/// A label below the gauge.
struct ScaleLabel {
    Q_GADGET
    QML_VALUE_TYPE(scaleLabel)
    Q_PROPERTY(QString text MEMBER text CONSTANT)
    Q_PROPERTY(double position MEMBER position CONSTANT)

public:
    QString text;
    double position = 0;  ///< 0 to 1
};

/// A speed as a row of lights: 36 of them on a logarithmic scale from 0.5 to 500 MB/s. Lights
/// are counted from 0 at the left.
class SpeedGauge {
    Q_GADGET
    QML_VALUE_TYPE(speedGauge)
    Q_PROPERTY(QString current READ current CONSTANT)
    Q_PROPERTY(QString average READ average CONSTANT)
    Q_PROPERTY(QString peak READ peak CONSTANT)
    Q_PROPERTY(QString label READ label CONSTANT)
    Q_PROPERTY(QColor currentColor READ currentColor CONSTANT)
    Q_PROPERTY(QColor averageColor READ averageColor CONSTANT)
    Q_PROPERTY(int segments READ segments CONSTANT)
    Q_PROPERTY(QList<bildkurier::ScaleLabel> scale READ scale CONSTANT)

public:
    static constexpr int segmentCount = 36;

    SpeedGauge() = default;
    explicit SpeedGauge(const SpeedMeter::Reading& reading) : reading_(reading) {}

    /// 0 to 1: where on the scale a speed stands, in bytes per second.
    static double position(double speed);
    /// The light that marks a speed; none for what is too slow for the scale.
    static std::optional<int> index(double speed);
    /// How many lights a speed turns on. Rounds, where `index` truncates.
    static int litSegments(double speed);

    Q_INVOKABLE QColor segmentColor(int segment) const;
    Q_INVOKABLE bool showsPeak(int segment) const;

    QString current() const;
    QString average() const;
    QString peak() const;
    /// For those who hear the gauge.
    QString label() const;
    QColor currentColor() const;
    static QColor averageColor();
    static int segments() { return segmentCount; }
    static QList<ScaleLabel> scale();

    bool operator==(const SpeedGauge&) const = default;

private:
    bool showsAverage(int segment) const;
    bool isLit(int segment) const;

    SpeedMeter::Reading reading_;
};

}  // namespace bildkurier
