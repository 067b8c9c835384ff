// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tweeny has no groups; its users keep a vector and step each tween.
#include "benches/tween/Crowd.hpp"

#include <tweeny/tweeny.h>
#include <vector>

namespace bench {
namespace {

class TweenyCrowd final : public Crowd {
  public:
    explicit TweenyCrowd(std::size_t count) {
        _made.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            _made.push_back(
                tweeny::from(0.0F).to(Destination).during(Frames).via(tweeny::easing::quadraticInOut));
            _made.back().onStep([this](float value) {
                _sum += static_cast<double>(value);
                return false;
            });
        }
    }
    void add() override {
        for (auto& tween : _made) _group.push_back(std::move(tween));
    }
    void tick() override {
        for (auto& tween : _group) tween.step(1);
    }
    void remove() override { _group.clear(); }
    double sum() const override { return _sum; }

  private:
    std::vector<tweeny::tween<float>> _made;
    std::vector<tweeny::tween<float>> _group;
    double _sum = 0;
};

} // namespace

std::unique_ptr<Crowd> makeTweenyCrowd(std::size_t count) {
    return std::make_unique<TweenyCrowd>(count);
}

} // namespace bench
