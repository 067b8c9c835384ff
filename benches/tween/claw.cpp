// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benches/tween/Crowd.hpp"

#include <claw/tween/easing/easing_quad.hpp>
#include <claw/tween/single_tweener.hpp>
#include <claw/tween/tweener_group.hpp>
#include <vector>

namespace bench {
namespace {

class ClawCrowd final : public Crowd {
  public:
    explicit ClawCrowd(std::size_t count) {
        _made.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            _made.emplace_back(claw::tween::single_tweener(
                0, static_cast<double>(Destination), Frames, [this](double value) { _sum += value; },
                claw::tween::easing_quad::ease_in_out));
        }
    }
    void add() override {
        for (const auto& tweener : _made) _group.insert(tweener);
    }
    void tick() override { _group.update(1); }
    void remove() override { _group.clear(); }
    double sum() const override { return _sum; }

  private:
    std::vector<claw::tween::tweener> _made;
    claw::tween::tweener_group _group;
    double _sum = 0;
};

} // namespace

std::unique_ptr<Crowd> makeClawCrowd(std::size_t count) {
    return std::make_unique<ClawCrowd>(count);
}

} // namespace bench
