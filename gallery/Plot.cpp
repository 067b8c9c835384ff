// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "gallery/Plot.hpp"

#include "gallery/palette.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace tonewright {
namespace {

using platform::Canvas;
using platform::Point;

constexpr int Frames = 120;          // of the movement that is drawn
constexpr double Margin = 7;         // on all sides, so that a dot at an end is whole
constexpr double CaptionHeight = 15; // below
constexpr double CaptionSize = 10.5; // of the letters
constexpr double LargestStep = 0.3;  // between two frames; what is larger is a jump and not a slope
constexpr double CurveThickness = 1.6;

double valueAt(EnumEasing type, int frame) {
    return static_cast<double>(easingFunction(type)(frame, 0, 1, Frames));
}

} // namespace

Plot::Plot(EnumEasing type)
    : _type(type) {
    for (int frame = 0; frame <= Frames; ++frame) {
        _lowest = std::min(_lowest, valueAt(type, frame));
        _highest = std::max(_highest, valueAt(type, frame));
    }
}

Point Plot::at(double width, double height, double progress, double value) const {
    const double across = std::max(0.0, width - 2 * Margin);
    const double up = std::max(0.0, height - 2 * Margin - CaptionHeight);
    return {Margin + progress * across, Margin + up * (1 - (value - _lowest) / (_highest - _lowest))};
}

void Plot::draw(Canvas& canvas) const {
    const double width = canvas.width();
    const double height = canvas.height();
    const platform::Color text = canvas.textColor();
    for (const double value : {0.0, 1.0}) {
        const std::array line = {at(width, height, 0, value), at(width, height, 1, value)};
        canvas.strokeLine(line, 1, text.faded(palette::Faint));
    }
    std::vector<Point> stroke;
    double previous = valueAt(_type, 0);
    const auto finishStroke = [&] {
        canvas.strokeLine(stroke, CurveThickness, text.faded(palette::Quiet));
        stroke.clear();
    };
    for (int frame = 0; frame <= Frames; ++frame) {
        const double value = valueAt(_type, frame);
        if (std::fabs(value - previous) > LargestStep) finishStroke();
        stroke.push_back(at(width, height, static_cast<double>(frame) / Frames, value));
        previous = value;
    }
    if (stroke.size() == 1) stroke.push_back(stroke.front()); // a lone point behind a jump
    finishStroke();
    canvas.drawText(easingName(_type), {0, height - CaptionHeight - 1, width, CaptionHeight}, CaptionSize,
                    text, platform::TextAlignment::Center);
}

} // namespace tonewright
