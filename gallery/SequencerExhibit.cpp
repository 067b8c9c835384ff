// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "gallery/Exhibit.hpp"
#include "gallery/palette.hpp"
#include "shared/Common/Animator/AnimationSequencer.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace tonewright {
namespace {

using platform::CGRect;

constexpr std::size_t Members = 6;
constexpr double Padding = 8; // on all sides
constexpr double HeadWidth = 2;

class SequencerExhibit final : public Exhibit {
  public:
    explicit SequencerExhibit(std::shared_ptr<platform::UIDrawingView> view)
        : _view(std::move(view)) {
        _view->setDrawing([this](platform::Canvas& canvas) {
            const CGRect bounds{0, 0, canvas.width(), canvas.height()};
            for (std::size_t i = 0; i < Members; ++i) {
                canvas.fillRectangle(bar(bounds, i), canvas.textColor().faded(palette::Faint));
            }
        });
        for (auto& member : _members) member = std::make_shared<Animator>();
    }

    void restart(const Movement& movement) override {
        _movement = movement;
        _rest = 0;
        _view->setNeedsDisplay(); // the bars' places are of whole frames
        // A timeline never gets shorter, and its members in play stay so: a new one for a new movement.
        _sequencer = std::make_shared<AnimationSequencer>();
        _sequencer->onFinished = [this](AnimationSequencer&) { _rest = RestTicks; };
        for (std::size_t i = 0; i < Members; ++i) {
            _members[i]->setup(0, 1, length(), FrameSeconds, movement.type);
            _sequencer->add(_members[i], start(i));
        }
    }
    void tick() override {
        // Not by the sequencer's own timer: its frame goes on while it is paused.
        if (_rest == 0) {
            _sequencer->advance();
        } else if (--_rest == 0) {
            restart(_movement);
        }
    }
    void show() override {
        const CGRect bounds = _view->bounds();
        std::vector<platform::Mark> marks;
        for (std::size_t i = 0; i < Members; ++i) {
            CGRect filled = bar(bounds, i);
            filled.width *= std::clamp(static_cast<double>(_members[i]->getValue()), 0.0, 1.0);
            marks.push_back({filled, 0, _members[i]->isFinished() ? palette::Arrived : palette::Moving});
        }
        // The frame is back at 0 when the timeline has been run to its end.
        const std::int64_t frame =
            _rest > 0 ? end() : std::min<std::int64_t>(_sequencer->getCurrentFrame(), end());
        marks.push_back(
            {{across(bounds, frame), Padding / 2, HeadWidth, std::max(0.0, bounds.height - Padding)},
             0,
             palette::Struck});
        _view->setMarks(std::move(marks));
    }
    std::int64_t tweens() const override { return _sequencer->getCurrentCount(); }

  private:
    [[nodiscard]] std::int64_t length() const { return std::max<std::int64_t>(1, _movement.frames / 2); }
    [[nodiscard]] std::int64_t start(std::size_t member) const {
        return 1 + static_cast<std::int64_t>(member) * length() / 3;
    }
    [[nodiscard]] std::int64_t end() const { return start(Members - 1) + length(); }
    [[nodiscard]] double across(const CGRect& bounds, std::int64_t frame) const {
        return Padding + std::max(0.0, bounds.width - 2 * Padding) * static_cast<double>(frame) /
                             static_cast<double>(end());
    }
    [[nodiscard]] CGRect bar(const CGRect& bounds, std::size_t member) const {
        const double height = std::max(0.0, bounds.height - 2 * Padding) / Members;
        const double left = across(bounds, start(member));
        return {left, Padding + height * (static_cast<double>(member) + 0.2),
                across(bounds, start(member) + length()) - left, height * 0.6};
    }

    std::shared_ptr<platform::UIDrawingView> _view;
    std::shared_ptr<AnimationSequencer> _sequencer = std::make_shared<AnimationSequencer>();
    std::array<std::shared_ptr<Animator>, Members> _members;
    Movement _movement;
    int _rest = 0; // ticks until the timeline begins anew; 0 while it runs
};

} // namespace

std::unique_ptr<Exhibit> makeSequencerExhibit(std::shared_ptr<platform::UIDrawingView> view) {
    return std::make_unique<SequencerExhibit>(std::move(view));
}

} // namespace tonewright
