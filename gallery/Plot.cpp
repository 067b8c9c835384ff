// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "gallery/Plot.hpp"

#include "gallery/palette.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <vector>

namespace tonewright {
namespace {

using platform::Canvas;
using platform::Point;

constexpr int Frames = 120;         // number of points that are drawn
constexpr double Margin = 7;        // on all sides, so that dots at the ends are not clipped
constexpr double LineHeight = 13;   // of the caption
constexpr double CaptionMargin = 2; // sum of the space above and below the caption
constexpr double LargestStep = 0.3; // larger steps between two frames are not drawn as a line
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
    const double up = std::max(0.0, height - 2 * Margin - captionHeight());
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
    if (stroke.size() == 1) stroke.push_back(stroke.front()); // a single point after a jump
    finishStroke();
    const auto drawLine = [&](std::string_view words, double bottom) {
        canvas.drawText(words, {0, bottom - LineHeight, width, LineHeight}, CaptionSize, text,
                        platform::TextAlignment::Center);
    };
    const std::string_view name = easingName(_type);
    const double bottom = height - CaptionMargin;
    if (_captionLines == 1) {
        drawLine(name, bottom);
        return;
    }
    const std::size_t family = name.find_last_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    drawLine(name.substr(0, family), bottom - LineHeight);
    drawLine(name.substr(family), bottom);
}

double Plot::captionHeight() const {
    return CaptionMargin + LineHeight * _captionLines;
}

} // namespace tonewright
