// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "gallery/Exhibit.hpp"
#include "gallery/lanes.hpp"
#include "gallery/palette.hpp"
#include "shared/Common/Animator/AnimatorChain.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace tonewright {
namespace {

constexpr std::size_t Members = 4;

class ChainExhibit final : public Exhibit {
  public:
    explicit ChainExhibit(std::shared_ptr<platform::UIDrawingView> view)
        : _view(std::move(view)) {
        _view->setDrawing([](platform::Canvas& canvas) {
            drawLanes(canvas, {0, 0, canvas.width(), canvas.height()}, Members);
        });
        for (auto& member : _members) {
            member = std::make_shared<Animator>();
            _chain->add(member);
        }
        _chain->onFinished = [this](AnimatorChain&) { _rest = RestTicks; };
    }

    void restart(const Movement& movement) override {
        _movement = movement;
        _rest = 0;
        _chain->stop();
        const std::int64_t frames = std::max<std::int64_t>(1, movement.frames / 2);
        for (const auto& member : _members) member->setup(0, 1, frames, FrameSeconds, movement.type);
    }
    void tick() override {
        if (_rest == 0) {
            _chain->animate();
        } else if (--_rest == 0) {
            restart(_movement);
        }
    }
    void show() override {
        const auto current = static_cast<std::size_t>(_chain->getCurrentIndex());
        std::vector<platform::Mark> marks;
        for (std::size_t i = 0; i < Members; ++i) {
            const bool waits = !_members[i]->isFinished() && i != current;
            marks.push_back(dotInLane(_view->bounds(), Members, i,
                                      static_cast<double>(_members[i]->getValue()),
                                      waits                       ? palette::Moving.faded(palette::Waiting)
                                      : _members[i]->isFinished() ? palette::Arrived
                                                                  : palette::Moving));
        }
        _view->setMarks(std::move(marks));
    }
    std::int64_t tweens() const override { return _rest == 0 ? 1 : 0; } // one member at a time

  private:
    std::shared_ptr<platform::UIDrawingView> _view;
    std::shared_ptr<AnimatorChain> _chain = std::make_shared<AnimatorChain>();
    std::array<std::shared_ptr<Animator>, Members> _members;
    Movement _movement;
    int _rest = 0; // ticks until the chain restarts; 0 while it plays
};

} // namespace

std::unique_ptr<Exhibit> makeChainExhibit(std::shared_ptr<platform::UIDrawingView> view) {
    return std::make_unique<ChainExhibit>(std::move(view));
}

} // namespace tonewright
