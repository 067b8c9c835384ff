// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Makes units of the fixtures and runs them by hand. Main thread.
#pragma once

#include "platform/dispatch/RunLoop.hpp"
#include "platform/effects/AVAudioUnit.hpp"
#include "platform/effects/AVAudioUnitComponentManager.hpp"
#include "platform/realtime/RealtimeScope.hpp"
#include "tests/support/testing.hpp"

#include <stdexcept>

namespace platform::test {

// Puts the fixtures on the search path before the system's plug-ins. This happens in the test itself because
// the virtual display comes with an environment of its own.
[[maybe_unused]] inline const bool FixturesArePlaced = [] {
    const char* fixtures = std::getenv("TONEWRIGHT_FIXTURES");
    return ::setenv("LV2_PATH", (std::string(fixtures == nullptr ? "" : fixtures) + ":/usr/lib/lv2").c_str(),
                    1) == 0;
}();

constexpr double Limit = 30; // seconds; generous, for a loaded machine

/// Runs the main loop until `done` returns true, polling every few milliseconds; returns whether that
/// happened in time.
inline bool waitUntil(const std::function<bool()>& done) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(Limit);
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) return false;
        RunLoop::current().runFor(0.003);
    }
    return true;
}

inline ComponentProvider& provider() {
    return *AVAudioUnitComponentManager::sharedAudioUnitComponentManager().provider();
}

/// Returns the unit of an installed plug-in.
inline std::shared_ptr<AUAudioUnit> makeUnit(const std::string& uri) {
    auto made = provider().instantiate({{}, "", "", uri});
    if (!made) throw std::runtime_error(made.error().localizedDescription());
    return made.value();
}

/// One processor with its planes: feeds a sine of 440 Hz, another phase in each channel, block by block.
class Rendering {
  public:
    Rendering(AUAudioUnit& unit, double rate, std::uint32_t block)
        : processor(unit.processor())
        , _rate(rate)
        , _in(processor->inputChannels(), std::vector<float>(block))
        , _out(processor->outputChannels(), std::vector<float>(block)) {
        const auto error = processor->allocate(rate, block);
        EXPECT_FALSE(error) << error->localizedDescription();
    }
    ~Rendering() { processor->release(); }
    Rendering(const Rendering&) = delete;
    Rendering& operator=(const Rendering&) = delete;

    void block(std::uint32_t frames) {
        std::vector<const float*> inputs;
        std::vector<float*> outputs;
        for (std::size_t channel = 0; channel < _in.size(); ++channel) {
            for (std::uint32_t i = 0; i < frames; ++i) {
                const double phase = 2 * std::numbers::pi * 440 * static_cast<double>(time + i) / _rate;
                _in[channel][i] = static_cast<float>(0.5 * std::sin(phase + static_cast<double>(channel)));
            }
            inputs.push_back(_in[channel].data());
        }
        for (auto& plane : _out) outputs.push_back(plane.data());
        {
            const RealtimeScope realtime;
            processor->process({inputs.data(), static_cast<std::uint32_t>(inputs.size()), frames},
                               {outputs.data(), static_cast<std::uint32_t>(outputs.size()), frames}, time);
        }
        time += frames;
    }
    void block() { block(static_cast<std::uint32_t>(_out.empty() ? _in[0].size() : _out[0].size())); }

    /// Renders so many blocks and returns the largest magnitude; infinity if a sample is not finite.
    float loudestOf(int blocks) {
        float loudest = 0;
        for (; blocks > 0; --blocks) {
            block();
            for (const auto& plane : _out) {
                for (const float sample : plane) {
                    loudest = std::isfinite(sample) ? std::max(loudest, std::abs(sample)) : HUGE_VALF;
                }
            }
        }
        return loudest;
    }

    [[nodiscard]] const std::vector<float>& in(std::size_t channel) const { return _in[channel]; }
    [[nodiscard]] const std::vector<float>& out(std::size_t channel) const { return _out[channel]; }

    const std::shared_ptr<NodeProcessor> processor;
    std::int64_t time = 0;

  private:
    double _rate;
    std::vector<std::vector<float>> _in, _out;
};

} // namespace platform::test
