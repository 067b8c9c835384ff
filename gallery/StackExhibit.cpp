// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "gallery/Exhibit.hpp"
#include "gallery/lanes.hpp"
#include "gallery/palette.hpp"
#include "shared/Common/Animator/AnimatorStack.hpp"

#include <array>
#include <utility>

namespace tonewright {
namespace {

constexpr std::size_t Members = 7;

class StackExhibit final : public Exhibit {
  public:
    explicit StackExhibit(std::shared_ptr<platform::UIDrawingView> view)
        : _view(std::move(view)) {
        _view->setDrawing([](platform::Canvas& canvas) {
            drawLanes(canvas, {0, 0, canvas.width(), canvas.height()}, Members);
        });
        for (auto& member : _members) member = std::make_shared<Animator>();
        _stack->onFinished = [this](AnimatorStack&) { _rest = RestTicks; };
    }

    void restart(const Movement& movement) override {
        _movement = movement;
        _rest = 0;
        _stack->stop();
        for (std::size_t i = 0; i < Members; ++i) {
            // From 0.5 to 1.5 times the frames of the movement.
            const auto frames = movement.frames * static_cast<std::int64_t>(Members - 1 + 2 * i) /
                                static_cast<std::int64_t>(2 * (Members - 1));
            _members[i]->setup(0, 1, frames, FrameSeconds, movement.type);
            _stack->add(_members[i]);
        }
    }
    void tick() override {
        if (_rest == 0) {
            _stack->animate();
        } else if (--_rest == 0) {
            restart(_movement);
        }
    }
    void show() override {
        std::vector<platform::Mark> marks;
        for (std::size_t i = 0; i < Members; ++i) {
            marks.push_back(dotInLane(_view->bounds(), Members, i,
                                      static_cast<double>(_members[i]->getValue()),
                                      _members[i]->isFinished() ? palette::Arrived : palette::Moving));
        }
        _view->setMarks(std::move(marks));
    }
    std::int64_t tweens() const override { return _stack->getCount(); }

  private:
    std::shared_ptr<platform::UIDrawingView> _view;
    std::shared_ptr<AnimatorStack> _stack = std::make_shared<AnimatorStack>();
    std::array<std::shared_ptr<Animator>, Members> _members;
    Movement _movement;
    int _rest = 0; // ticks until all members restart; 0 while they run
};

} // namespace

std::unique_ptr<Exhibit> makeStackExhibit(std::shared_ptr<platform::UIDrawingView> view) {
    return std::make_unique<StackExhibit>(std::move(view));
}

} // namespace tonewright
