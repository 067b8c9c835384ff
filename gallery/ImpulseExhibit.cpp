// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "gallery/ImpulseExhibit.hpp"

#include "gallery/palette.hpp"

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

using platform::CGRect;

constexpr double BallRadius = 8;
constexpr double WallWidth = 4;
constexpr double Padding = 8;
constexpr int FlashTicks = 12;
constexpr float Velocity = 0.12F; // of the half way between the walls, per tick
constexpr float Intensity = 0.975F;

} // namespace

ImpulseExhibit::ImpulseExhibit(std::shared_ptr<platform::UIDrawingView> view)
    : _view(std::move(view)) {
    _view->setDrawing([](platform::Canvas& canvas) {
        const platform::Color color = canvas.textColor().faded(palette::Quiet);
        const double height = canvas.height() - 2 * Padding;
        canvas.fillRectangle({Padding, Padding, WallWidth, height}, color);
        canvas.fillRectangle({canvas.width() - Padding - WallWidth, Padding, WallWidth, height}, color);
    });
    _impulse->onCollision = [this](Impulse&) { _flash = FlashTicks; };
    // The value is still there and will be 0: the ball stays where it came to rest.
    _impulse->onFinished = [this](Impulse&) { _origin = position(); };
}

void ImpulseExhibit::flick() {
    const auto origin = static_cast<float>(_origin);
    _impulse->setMinMax(true, -1 - origin, 1 - origin);
    _impulse->setup(1, position() > 0 ? -Velocity : Velocity, FrameSeconds, Intensity);
}

void ImpulseExhibit::restart(const Movement&) {
    _impulse->stop();
    _origin = 0;
    _flash = 0;
    flick();
}

void ImpulseExhibit::tick() {
    if (_flash > 0) --_flash;
    if (!_impulse->isFinished()) _impulse->animate();
}

void ImpulseExhibit::show() {
    const CGRect bounds = _view->bounds();
    const double reach = std::max(0.0, bounds.width / 2 - Padding - WallWidth - BallRadius);
    _view->setMarks({dotAt({bounds.width / 2 + reach * position(), bounds.height / 2}, BallRadius,
                           _flash > 0               ? palette::Struck
                           : _impulse->isFinished() ? palette::Arrived
                                                    : palette::Moving)});
}

} // namespace tonewright
