// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Animator/Impulse.hpp"

#include "platform/foundation/checked.hpp"

#include <cmath>
#include <utility>

namespace tonewright {

void Impulse::setup(std::int64_t frames, float amount, float interval, float intensity) {
    _frames = frames;
    _step = 0;
    if (_frames < 0) _frames = 0;
    _source = amount;
    _amount = amount;
    _intensity = intensity;
    _interval = interval;
}

void Impulse::setMinMax(bool enabled, float min, float max) {
    _collision = enabled;
    _minVal = min;
    _maxVal = max;
}

void Impulse::start() {
    auto self = weak_from_this().lock();
    if (!self) platform::fatal("Impulse.start needs an impulse that is owned by a shared pointer");
    _timer = platform::Timer::scheduledTimerWithTimeInterval(static_cast<double>(_interval), true,
                                                             [self = std::move(self)] { self->animate(); });
}

void Impulse::stop() {
    const auto self = weak_from_this().lock(); // the timer may hold the last other reference
    if (_timer) std::exchange(_timer, nullptr)->invalidate();
    reset();
}

void Impulse::animate() {
    const auto self = weak_from_this().lock(); // a callback may release the impulse
    _amount = _amount * _intensity;
    if (!(std::fabs(_amount) < _threshold)) { // also true for NaN
        _step = platform::checkedAdd<std::int64_t>(_step, 1);
        _value = _value + _amount;
        if (_collision && (_value <= _minVal || _value >= _maxVal)) {
            _amount = -_amount;
            _value = _value + _amount;
            if (onCollision) onCollision(*this);
        }
        if (onAnimation) onAnimation(*this);
        return;
    }
    _amount = 0;
    if (onFinished) onFinished(*this);
    stop();
}

bool Impulse::isFinished() {
    return _frames < 0;
}

float Impulse::getSourceValue() {
    return _source;
}

void Impulse::reset() {
    _frames = -1;
    _step = 0;
    _amount = 0;
    _value = 0;
}

} // namespace tonewright
