// SPDX-License-Identifier: GPL-3.0-or-later
// SPDX-FileCopyrightText: The Bildkurier authors
#include "Landscape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace bildkurier {
namespace {

struct Colour {
    double red = 0;
    double green = 0;
    double blue = 0;
};

Colour mix(const Colour& from, const Colour& to, double share) {
    const auto blend = [share](double a, double b) { return a + (b - a) * share; };
    return {blend(from.red, to.red), blend(from.green, to.green), blend(from.blue, to.blue)};
}

/// 0 in the night, 1 at noon.
double daylight(double hour) {
    return std::clamp(std::sin((hour - 5.0) / 16.0 * std::numbers::pi), 0.0, 1.0);
}

constexpr std::size_t ridges = 4;

/// How high each ridge, the farthest first, stands at `across`: shares of the picture's height.
std::array<double, ridges> ridgesAt(int seed, double across) {
    std::array<double, ridges> heights{};
    for (std::size_t layer = 0; layer < ridges; ++layer) {
        const double depth = static_cast<double>(layer);
        const double phase = seed * 1.7 + depth * 2.3;
        heights.at(layer) = 0.5 - 0.13 * depth + 0.08 * std::sin(across * 4.0 + phase) +
                            0.03 * std::sin(across * 11.0 + phase * 2.0);
    }
    return heights;
}

/// A number from 0 to 1 that looks random: grain and leaves.
double grain(int seed, int x, int y) {
    std::uint32_t mixed = static_cast<std::uint32_t>(seed) * 83'492'791U;
    mixed ^= static_cast<std::uint32_t>(x) * 73'856'093U;
    mixed ^= static_cast<std::uint32_t>(y) * 19'349'663U;
    mixed = (mixed ^ (mixed >> 13U)) * 0x5BD1'E995U;
    return (mixed ^ (mixed >> 15U)) % 1'000 / 1'000.0;
}

std::uint8_t level(double value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0.0, 1.0) * 255.0);
}

}  // namespace

Picture Landscape::draw(int width, int height) const {
    const double light = daylight(hour);
    const Colour zenith = mix({0.02, 0.02, 0.10}, {0.25, 0.50, 0.90}, light);
    const Colour horizon = mix({0.10, 0.08, 0.20}, {1.00, 0.75, 0.50}, std::sqrt(light));
    const Colour disc = light > 0 ? Colour{1.0, 0.95, 0.70} : Colour{0.85, 0.87, 0.92};
    const double hue = seed * 0.9;
    const Colour meadow = {0.35 + 0.25 * std::sin(hue), 0.45 + 0.20 * std::sin(hue + 2.0),
                           0.25 + 0.20 * std::sin(hue + 4.0)};
    const double discX = 0.2 + 0.6 * std::fmod(hour / 16.0 + 0.3, 1.0);
    const double discY = 0.85 - 0.55 * std::max(light, 0.5);

    std::array<Colour, ridges> hills;
    for (std::size_t layer = 0; layer < ridges; ++layer) {
        const Colour hazy = mix(meadow, horizon, 0.6 - 0.18 * static_cast<double>(layer));
        hills.at(layer) = mix({0.02, 0.02, 0.05}, hazy, 0.2 + 0.8 * light);
    }
    std::vector<std::array<double, ridges>> skyline;
    skyline.reserve(static_cast<std::size_t>(width));
    for (int x = 0; x < width; ++x) {
        skyline.push_back(ridgesAt(seed, static_cast<double>(x) / width));
    }

    Picture picture{width, height, {}};
    picture.points.reserve(skyline.size() * static_cast<std::size_t>(height) * 3);
    for (int y = 0; y < height; ++y) {
        const double down = static_cast<double>(y) / height;
        const Colour sky = mix(zenith, horizon, down);
        for (int x = 0; x < width; ++x) {
            const double fromDisc = std::hypot(x - discX * width, y - discY * height);
            Colour colour = fromDisc < 0.07 * height ? disc : sky;
            const auto& ridge = skyline[static_cast<std::size_t>(x)];
            for (std::size_t layer = 0; layer < ridges; ++layer) {
                if (1.0 - down < ridge.at(layer)) colour = hills.at(layer);
            }
            const double noise = (grain(seed, x, y) - 0.5) * 0.06;
            picture.points.push_back(level(colour.red + noise));
            picture.points.push_back(level(colour.green + noise));
            picture.points.push_back(level(colour.blue + noise));
        }
    }
    return picture;
}

}  // namespace bildkurier
