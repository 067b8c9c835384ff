// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benches/support/measure.hpp"
#include "benches/tween/Crowd.hpp"
#include "shared/Common/Animator/AnimatorStack.hpp"

#include <malloc.h>
#include <vector>

namespace bench {
namespace {

using namespace tonewright;

class StackCrowd final : public Crowd {
  public:
    explicit StackCrowd(std::size_t count) {
        _animators.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            _animators.push_back(
                Animator::create(0, Destination, Frames, 0.009F, EnumEasing::EASING_easeInOutQuad));
            _animators.back()->onAnimation = [this](Animator&, float value) { _sum += value; };
        }
    }
    void add() override {
        for (const auto& animator : _animators) _stack->add(animator);
    }
    void tick() override { _stack->animate(); }
    void remove() override { _stack->stop(); }
    double sum() const override { return _sum; }

  private:
    std::shared_ptr<AnimatorStack> _stack = std::make_shared<AnimatorStack>();
    std::vector<std::shared_ptr<Animator>> _animators;
    double _sum = 0;
};

double heapBytes() {
    const auto info = ::mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

} // namespace

std::unique_ptr<Crowd> makeStackCrowd(std::size_t count) {
    return std::make_unique<StackCrowd>(count);
}

double finishMilliseconds(std::size_t count) {
    const auto stack = std::make_shared<AnimatorStack>();
    std::size_t finished = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto animator = Animator::create(0, 1, 1);
        animator->onFinished = [&finished](Animator&, float) { ++finished; };
        stack->add(animator);
    }
    stack->onRemovedItem = [](AnimatorStack& s, Animator&) { keep(s.getCount()); };
    stack->animate();
    const double milliseconds = nanoseconds([&] { stack->animate(); }) / 1e6;
    return finished == count && stack->getCount() == 0 ? milliseconds : -1;
}

double bytesPerAnimator(std::size_t count) {
    double sum = 0;
    const double before = heapBytes();
    const auto stack = std::make_shared<AnimatorStack>();
    for (std::size_t i = 0; i < count; ++i) {
        const auto animator = Animator::create(0, Destination, Frames);
        animator->onAnimation = [&sum](Animator&, float value) { sum += static_cast<double>(value); };
        stack->add(animator);
    }
    return (heapBytes() - before) / static_cast<double>(count);
}

} // namespace bench
