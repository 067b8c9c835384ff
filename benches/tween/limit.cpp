// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The limit of the machine: arrays of fields, with an easing function and a callback per tween, both called
// through function pointers. There are no members to add and remove, no owners and no virtual functions.
#include "benches/tween/Crowd.hpp"

#include <cstdint>
#include <vector>

namespace bench {
namespace {

using Easing = float (*)(std::int64_t, float, float, std::int64_t);
using Called = void (*)(void*, float);

float easeInOutQuad(std::int64_t t, float b, float c, std::int64_t d) {
    float w = static_cast<float>(t) / (static_cast<float>(d) / 2);
    if (w < 1) return c / 2 * w * w + b;
    w -= 1;
    return -c / 2 * (w * (w - 2) - 1) + b;
}

class LimitCrowd final : public Crowd {
  public:
    explicit LimitCrowd(std::size_t count)
        : _count(count) {}
    void add() override {
        for (std::size_t i = 0; i < _count; ++i) {
            _source.push_back(0);
            _amount.push_back(Destination);
            _value.push_back(0);
            _step.push_back(0);
            _frames.push_back(Frames);
            _easing.push_back(easeInOutQuad);
            _called.push_back(
                [](void* owner, float value) { static_cast<LimitCrowd*>(owner)->_sum += value; });
            _owner.push_back(this);
        }
    }
    void tick() override {
        for (std::size_t i = 0; i < _step.size(); ++i) {
            if (_step[i] >= _frames[i]) continue;
            _called[i](_owner[i], _value[i]);
            ++_step[i];
            _value[i] = _easing[i](_step[i], _source[i], _amount[i], _frames[i]);
        }
    }
    void remove() override {
        _source.clear(), _amount.clear(), _value.clear(), _step.clear(), _frames.clear();
        _easing.clear(), _called.clear(), _owner.clear();
    }
    double sum() const override { return _sum; }

  private:
    std::size_t _count;
    std::vector<float> _source, _amount, _value;
    std::vector<std::int64_t> _step, _frames;
    std::vector<Easing> _easing;
    std::vector<Called> _called;
    std::vector<void*> _owner;
    double _sum = 0;
};

} // namespace

std::unique_ptr<Crowd> makeLimitCrowd(std::size_t count) {
    return std::make_unique<LimitCrowd>(count);
}

} // namespace bench
