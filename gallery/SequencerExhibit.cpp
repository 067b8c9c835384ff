// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The left part shows time: each member has a bar from its first frame to its last frame, filled up to the
// current frame. The right part shows the value of each member in a lane beside its bar.
#include "gallery/Exhibit.hpp"
#include "gallery/lanes.hpp"
#include "gallery/palette.hpp"
#include "shared/Common/Animator/AnimationSequencer.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace tonewright {
namespace {

using platform::CGRect;

constexpr std::size_t Members = 6;
constexpr double TimeShare = 0.6; // fraction of the width for the left part
constexpr double HeadWidth = 2;

CGRect timePart(const CGRect& bounds) {
    return {0, 0, bounds.width * TimeShare, bounds.height};
}

CGRect valuePart(const CGRect& bounds) {
    const double left = bounds.width * TimeShare;
    return {left, 0, bounds.width - left, bounds.height};
}

class SequencerExhibit final : public Exhibit {
  public:
    explicit SequencerExhibit(std::shared_ptr<platform::UIDrawingView> view)
        : _view(std::move(view)) {
        _view->setDrawing([this](platform::Canvas& canvas) {
            const CGRect bounds{0, 0, canvas.width(), canvas.height()};
            for (std::size_t i = 0; i < Members; ++i) {
                canvas.fillRectangle(bar(bounds, i, end()), canvas.textColor().faded(palette::Faint));
            }
            captionAxis(canvas, timePart(bounds), across(bounds, 0), across(bounds, end()), "0", "frame",
                        std::to_string(end()));
            drawLanes(canvas, valuePart(bounds), Members);
        });
        for (auto& member : _members) member = std::make_shared<Animator>();
    }

    void restart(const Movement& movement) override {
        _movement = movement;
        _rest = 0;
        _view->setNeedsDisplay(); // the bars depend on the number of frames
        // Each movement needs a new sequencer, because a timeline never gets shorter and running members keep
        // running.
        _sequencer = std::make_shared<AnimationSequencer>();
        _sequencer->onFinished = [this](AnimationSequencer&) { _rest = RestTicks; };
        for (std::size_t i = 0; i < Members; ++i) {
            _members[i]->setup(0, 1, length(), FrameSeconds, movement.type);
            _sequencer->add(_members[i], start(i));
        }
    }
    void tick() override {
        // The sequencer's timer is not used, because it advances the frame even while the sequencer is
        // paused.
        if (_rest == 0) {
            _sequencer->advance();
        } else if (--_rest == 0) {
            restart(_movement);
        }
    }
    void show() override {
        const CGRect bounds = _view->bounds();
        // At the end of the timeline the sequencer resets its frame to 0.
        const std::int64_t frame = _rest > 0 ? end() : _sequencer->getCurrentFrame();
        std::vector<platform::Mark> marks;
        for (std::size_t i = 0; i < Members; ++i) {
            const auto value = static_cast<double>(_members[i]->getValue());
            const platform::Color color = _members[i]->isFinished() ? palette::Arrived
                                          : frame < start(i)        ? palette::Moving.faded(palette::Waiting)
                                                                    : palette::Moving;
            marks.push_back({bar(bounds, i, frame), 0, color});
            marks.push_back(dotInLane(valuePart(bounds), Members, i, value, color));
        }
        const double top = LanePadding / 2;
        const double height = laneHeight(bounds, Members) * Members + top;
        marks.push_back({{across(bounds, frame), top, HeadWidth, height}, 0, palette::Struck});
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
        const double width = std::max(0.0, timePart(bounds).width - 2 * LanePadding);
        return LanePadding + width * static_cast<double>(frame) / static_cast<double>(end());
    }
    /// Returns the bar of `member`, filled up to `frame`.
    [[nodiscard]] CGRect bar(const CGRect& bounds, std::size_t member, std::int64_t frame) const {
        const double height = laneHeight(bounds, Members) * 0.6;
        const double left = across(bounds, start(member));
        const double right = across(bounds, std::clamp(frame, start(member), start(member) + length()));
        return {left, laneY(bounds, Members, member) - height / 2, right - left, height};
    }

    std::shared_ptr<platform::UIDrawingView> _view;
    std::shared_ptr<AnimationSequencer> _sequencer = std::make_shared<AnimationSequencer>();
    std::array<std::shared_ptr<Animator>, Members> _members;
    Movement _movement;
    int _rest = 0; // ticks until the timeline restarts; 0 while it runs
};

} // namespace

std::unique_ptr<Exhibit> makeSequencerExhibit(std::shared_ptr<platform::UIDrawingView> view) {
    return std::make_unique<SequencerExhibit>(std::move(view));
}

} // namespace tonewright
