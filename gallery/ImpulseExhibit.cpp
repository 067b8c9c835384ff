// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "gallery/ImpulseExhibit.hpp"

#include "gallery/palette.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tonewright {
namespace {

using platform::CGRect;

constexpr double BallRadius = 8;
constexpr double WallWidth = 4;
constexpr double Padding = 8;
constexpr int FlashTicks = 12;
constexpr float Velocity = 0.12F;   // units of the impulse per tick
constexpr double Intensity = 0.975; // damping factor per tick for `_reach` = 1

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
    // After this call the impulse resets its value to 0, but the ball must stay where it is.
    _impulse->onFinished = [this](Impulse&) { _origin = position(); };
}

void ImpulseExhibit::flick() {
    _impulse->setMinMax(true, static_cast<float>((-1 - _origin) * _reach),
                        static_cast<float>((1 - _origin) * _reach));
    _impulse->setup(1, position() > 0 ? -Velocity : Velocity, FrameSeconds,
                    static_cast<float>(std::pow(Intensity, 1 / _reach)));
}

void ImpulseExhibit::restart(const Movement& movement) {
    _impulse->stop();
    _origin = 0;
    _reach = static_cast<double>(movement.frames) / static_cast<double>(Movement{}.frames);
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
