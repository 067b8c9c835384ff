// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Many tweens of one library in one group. Each runs from 0 to 100 in 1,000 frames with a quadratic
// ease-in-out, and calls back with its value on every tick.
#pragma once

#include <cstddef>
#include <memory>

namespace bench {

inline constexpr float Destination = 100;
inline constexpr int Frames = 1000;

class Crowd {
  public:
    Crowd() = default;
    virtual ~Crowd() = default;
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;
    virtual void add() = 0;                       ///< adds the existing tweens to the group
    virtual void tick() = 0;                      ///< advances each tween by one frame
    virtual void remove() = 0;                    ///< removes all tweens from the group
    [[nodiscard]] virtual double sum() const = 0; ///< returns the sum of the values passed to the callbacks
};

[[nodiscard]] std::unique_ptr<Crowd> makeStackCrowd(std::size_t count);
[[nodiscard]] std::unique_ptr<Crowd> makeLimitCrowd(std::size_t count);
[[nodiscard]] std::unique_ptr<Crowd> makeTweenyCrowd(std::size_t count);
[[nodiscard]] std::unique_ptr<Crowd> makeClawCrowd(std::size_t count);
[[nodiscard]] std::unique_ptr<Crowd> makeQtCrowd(std::size_t count);

/// Returns the milliseconds that a stack takes for the tick on which all of its `count` members finish.
[[nodiscard]] double finishMilliseconds(std::size_t count);
/// Returns the heap bytes per animator in a stack, with one callback that captures a reference.
[[nodiscard]] double bytesPerAnimator(std::size_t count);

} // namespace bench
