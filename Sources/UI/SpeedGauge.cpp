// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "SpeedGauge.h"

#include "Formatting.h"

#include <algorithm>
#include <cmath>

namespace bildkurier {

namespace {

constexpr double floorSpeed = 500'000;  // bytes per second
constexpr double decades = 3;
constexpr double unlit = 0.14;

QColor rgb(double red, double green, double blue, double opacity = 1) {
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green),
                            static_cast<float>(blue), static_cast<float>(opacity));
}

QColor zoneColor(double position) {
    if (position < 0.6) return rgb(0.2, 0.95, 0.3);
    if (position < 0.85) return rgb(1, 0.85, 0.1);
    return rgb(1, 0.25, 0.2);
}

QColor faded(QColor color, double opacity) {
    color.setAlphaF(static_cast<float>(opacity));
    return color;
}

double centre(int segment) { return (segment + 0.5) / SpeedGauge::segmentCount; }

QString speedText(double speed) { return QString::fromStdString(formatSpeed(speed)); }

}  // namespace

double SpeedGauge::position(double speed) {
    if (!(speed > floorSpeed)) return 0;
    return std::clamp(std::log10(speed / floorSpeed) / decades, 0.0, 1.0);
}

std::optional<int> SpeedGauge::index(double speed) {
    if (!(speed > floorSpeed)) return std::nullopt;
    return std::min(static_cast<int>(position(speed) * segmentCount), segmentCount - 1);
}

int SpeedGauge::litSegments(double speed) {
    return static_cast<int>(std::round(position(speed) * segmentCount));
}

bool SpeedGauge::isLit(int segment) const { return segment < litSegments(reading_.current); }

bool SpeedGauge::showsAverage(int segment) const { return index(reading_.average) == segment; }

bool SpeedGauge::showsPeak(int segment) const {
    return index(reading_.peak) == segment && !showsAverage(segment);
}

QColor SpeedGauge::segmentColor(int segment) const {
    if (showsAverage(segment)) return averageColor();
    return faded(zoneColor(centre(segment)), isLit(segment) ? 1 : unlit);
}

QString SpeedGauge::current() const { return speedText(reading_.current); }

QString SpeedGauge::average() const { return speedText(reading_.average); }

QString SpeedGauge::peak() const { return speedText(reading_.peak); }

QString SpeedGauge::label() const {
    return QObject::tr("Geschwindigkeit %1, Durchschnitt %2").arg(current(), average());
}

QColor SpeedGauge::currentColor() const { return zoneColor(position(reading_.current)); }

QColor SpeedGauge::averageColor() {
    static const QColor color = rgb(0.2, 0.9, 1);
    return color;
}

QList<ScaleLabel> SpeedGauge::scale() {
    return {{"1", position(1e6)}, {"10", position(1e7)}, {"100", position(1e8)}};
}

}  // namespace bildkurier
