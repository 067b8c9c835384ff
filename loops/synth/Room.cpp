// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The reverb: all-pass filters for diffusion, then eight delay lines that feed each other through an
// orthogonal (Hadamard) matrix. The loss of each line makes all frequencies below the damping frequency fall
// by 60 dB in the same time.

#include "Effect.hpp"
#include "ExactMath.hpp"
#include "Filter.hpp"

#include <array>

namespace tonewright::loops {

namespace {

class DelayLine {
  public:
    explicit DelayLine(std::size_t frames)
        : _frames(std::max<std::size_t>(frames, 1)) {}

    [[nodiscard]] double read() const noexcept { return _frames[_at]; }

    void write(double value) noexcept {
        _frames[_at] = std::fabs(value) < 1e-20 ? 0.0 : value;
        _at = _at + 1 == _frames.size() ? 0 : _at + 1;
    }

  private:
    std::vector<double> _frames;
    std::size_t _at = 0;
};

class Diffuser {
  public:
    explicit Diffuser(std::size_t frames)
        : _line(frames) {}

    double step(double input) noexcept {
        const double delayed = _line.read();
        const double fed = input - 0.62 * delayed;
        _line.write(fed);
        return delayed + 0.62 * fed;
    }

  private:
    DelayLine _line;
};

void mix(std::array<double, 8>& values) noexcept {
    for (std::size_t span = 1; span < 8; span *= 2) {
        for (std::size_t index = 0; index < 8; ++index) {
            if ((index & span) == 0) {
                const double a = values[index];
                const double b = values[index + span];
                values[index] = a + b;
                values[index + span] = a - b;
            }
        }
    }
    for (double& value : values) value *= 0.35355339059327376220;
}

} // namespace

SettingFault setRoom(Room& room, std::string_view name, double value) {
    constexpr std::array<Setting<Room>, 4> Settings{{
        {.name = "decay", .member = &Room::decay, .least = 0.1, .greatest = 12},
        {.name = "damp", .member = &Room::damp, .least = 200, .greatest = 18000},
        {.name = "predelay", .member = &Room::predelay, .least = 0, .greatest = 0.3},
        {.name = "size", .member = &Room::size, .least = 0.2, .greatest = 3},
    }};
    return assign<Room>(room, Settings, name, value);
}

void applyRoom(StereoBuffer& loop, const Room& room, double rate) {
    constexpr std::array<double, 8> Milliseconds{29.7, 37.1, 41.3, 47.9, 53.3, 61.7, 71.9, 83.1};
    constexpr std::array<double, 4> DiffusionLeft{4.77, 3.59, 12.73, 9.31};
    constexpr std::array<double, 4> DiffusionRight{4.93, 3.47, 12.19, 9.83};
    const auto framesOf = [rate](double milliseconds) {
        return static_cast<std::size_t>(milliseconds * 0.001 * rate);
    };

    std::vector<DelayLine> lines;
    std::array<double, 8> losses{};
    std::array<Smoother, 8> dampers;
    for (std::size_t index = 0; index < 8; ++index) {
        const std::size_t frames = framesOf(Milliseconds[index] * room.size);
        lines.emplace_back(frames);
        const double seconds = static_cast<double>(frames) / rate;
        losses[index] = powerOfTwo(-9.96578428466208704576 * seconds / room.decay);
        dampers[index] = Smoother(room.damp, rate);
    }
    std::vector<Diffuser> left;
    std::vector<Diffuser> right;
    for (std::size_t index = 0; index < 4; ++index) {
        left.emplace_back(framesOf(DiffusionLeft[index]));
        right.emplace_back(framesOf(DiffusionRight[index]));
    }
    DelayLine waitLeft(framesOf(room.predelay * 1000.0));
    DelayLine waitRight(framesOf(room.predelay * 1000.0 + 1.3));
    std::array<StateVariableFilter, 2> cut;
    const FilterTuning cutTuning(160.0, 0.0, rate);

    const auto step = [&](StereoFrame in, std::size_t) {
        StereoFrame fed{waitLeft.read(), waitRight.read()};
        waitLeft.write(cut[0].step(in.left, cutTuning).high);
        waitRight.write(cut[1].step(in.right, cutTuning).high);
        for (std::size_t index = 0; index < 4; ++index) {
            fed.left = left[index].step(fed.left);
            fed.right = right[index].step(fed.right);
        }
        std::array<double, 8> values{};
        for (std::size_t index = 0; index < 8; ++index) {
            values[index] = dampers[index].step(lines[index].read()) * losses[index];
        }
        const StereoFrame out{values[0] + values[2] - values[4] + values[6],
                              values[1] - values[3] + values[5] + values[7]};
        mix(values);
        for (std::size_t index = 0; index < 8; ++index) {
            lines[index].write(values[index] + (index % 2 == 0 ? fed.left : fed.right));
        }
        return StereoFrame{out.left * 0.5, out.right * 0.5};
    };
    runAround(loop, static_cast<std::size_t>((1.8 * room.decay + 0.3) * rate),
              step); // by then the state has decayed by 108 dB
}

} // namespace tonewright::loops
