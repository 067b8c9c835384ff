// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "gallery/CurveWall.hpp"

#include "gallery/Exhibit.hpp"
#include "gallery/palette.hpp"

#include <algorithm>
#include <string>
#include <utility>

namespace tonewright {
namespace {

using platform::CGRect;

// Two families of four shapes in a row.
constexpr std::size_t Columns = 8;
constexpr double Gap = 4;
constexpr double DotRadius = 4;
constexpr double CaptionRoom = 8; // on both sides of a one-line caption

} // namespace

CurveWall::CurveWall() {
    _stack->onFinished = [this](AnimatorStack&) { _rest = RestTicks; };
}

void CurveWall::viewDidLoad() {
    constexpr auto First = static_cast<std::int64_t>(EnumEasing::EASING_easeInQuad);
    constexpr auto Last = static_cast<std::int64_t>(EnumEasing::EASING_easeOutInBounce);
    for (std::int64_t raw = First; raw <= Last; ++raw) {
        const auto type = static_cast<EnumEasing>(raw);
        const auto drawing = std::make_shared<platform::UIDrawingView>();
        const auto plot = std::make_shared<Plot>(type);
        drawing->setDrawing([plot](platform::Canvas& canvas) { plot->draw(canvas); });
        const auto toggle =
            std::make_shared<platform::UIToggle>(drawing, std::string(easingName(type)),
                                                 _entries.empty() ? nullptr : _entries.front().toggle.get());
        toggle->onChosen = [this, type] {
            if (onChosen) onChosen(type);
        };
        view()->addSubview(toggle);
        _entries.push_back({plot, std::make_shared<Animator>(), drawing, toggle});
    }
}

void CurveWall::viewDidLayoutSubviews() {
    const CGRect bounds = view()->bounds();
    const std::size_t rows = (_entries.size() + Columns - 1) / Columns;
    const double width = bounds.width / Columns;
    const double height = bounds.height / static_cast<double>(rows);
    for (std::size_t i = 0; i < _entries.size(); ++i) {
        const std::size_t row = i / Columns;
        const std::size_t column = i % Columns;
        const CGRect cell{static_cast<double>(column) * width + Gap / 2,
                          static_cast<double>(row) * height + Gap / 2, std::max(0.0, width - Gap),
                          std::max(0.0, height - Gap)};
        if (_entries[i].toggle->frame() != cell) _entries[i].toggle->setFrame(cell);
    }
    fitCaptions(width - Gap);
    show();
}

// All captions have the same number of lines, so that all curves have the same height.
void CurveWall::fitCaptions(double width) {
    double widest = 0;
    for (const Entry& entry : _entries) {
        widest =
            std::max(widest, entry.drawing->textWidth(easingName(entry.plot->type()), Plot::CaptionSize));
    }
    const int lines = widest + CaptionRoom <= width ? 1 : 2;
    if (lines == _captionLines) return;
    _captionLines = lines;
    for (const Entry& entry : _entries) {
        entry.plot->setCaptionLines(lines);
        entry.drawing->setNeedsDisplay();
    }
}

void CurveWall::restart(std::int64_t frames) {
    _frames = frames;
    _frame = 0;
    _rest = 0;
    _stack->stop();
    for (const Entry& entry : _entries) {
        entry.animator->setup(0, 1, frames, FrameSeconds, entry.plot->type());
        _stack->add(entry.animator);
    }
}

void CurveWall::tick() {
    if (_rest > 0) {
        if (--_rest == 0) restart(_frames);
        return;
    }
    _frame = std::min(_frame + 1, _frames);
    _stack->animate();
}

void CurveWall::show() {
    const double progress = static_cast<double>(_frame) / static_cast<double>(_frames);
    for (const Entry& entry : _entries) {
        const CGRect bounds = entry.drawing->bounds();
        const auto value = static_cast<double>(entry.animator->getValue());
        entry.drawing->setMarks(
            {dotAt(entry.plot->at(bounds.width, bounds.height, progress, value), DotRadius,
                   entry.animator->isFinished() ? palette::Arrived : palette::Moving)});
    }
}

void CurveWall::choose(EnumEasing type) {
    for (const Entry& entry : _entries) {
        if (entry.plot->type() == type) entry.toggle->choose();
    }
}

} // namespace tonewright
