// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Creates units of the fixture plug-ins and renders blocks with them. Main thread only.
#pragma once

#include "platform/effects/AVAudioUnit.hpp"
#include "platform/effects/AVAudioUnitComponentManager.hpp"
#include "platform/realtime/RealtimeScope.hpp"
#include "tests/support/signals.hpp"
#include "tests/support/waitFor.hpp"

namespace platform::test {

// Puts the fixture plug-ins on the search path before the system's plug-ins. The test has to do this itself,
// because tools/with-display sets up a new environment.
[[maybe_unused]] inline const bool FixturesArePlaced = [] {
    const char* fixtures = std::getenv("TONEWRIGHT_FIXTURES");
    return ::setenv("LV2_PATH", (std::string(fixtures == nullptr ? "" : fixtures) + ":/usr/lib/lv2").c_str(),
                    1) == 0;
}();

using tonewright::test::waitFor;

inline ComponentProvider& provider() {
    return *AVAudioUnitComponentManager::sharedAudioUnitComponentManager().provider();
}

/// Returns the unit of an installed plug-in.
inline std::shared_ptr<AUAudioUnit> makeUnit(const std::string& uri) {
    auto made = provider().instantiate({{}, "", "", uri});
    if (!made) throw std::runtime_error(made.error().localizedDescription());
    return made.value();
}

/// Sets an environment variable. The destructor restores the former value.
class Setting : tonewright::test::Uncopied {
  public:
    Setting(const char* name, const std::string& value)
        : _name(name) {
        if (const char* former = std::getenv(name)) _former = former;
        ::setenv(name, value.c_str(), 1);
    }
    ~Setting() {
        if (_former) {
            ::setenv(_name, _former->c_str(), 1);
        } else {
            ::unsetenv(_name);
        }
    }

  private:
    const char* _name;
    std::optional<std::string> _former;
};

/// A processor with its buffers. Feeds it block by block with a sine of 440 Hz, with a different phase in
/// each channel.
class Rendering : tonewright::test::Uncopied {
  public:
    Rendering(AUAudioUnit& unit, double rate, std::uint32_t block)
        : processor(unit.processor())
        , _rate(rate)
        , _block(block)
        , _in(processor->inputChannels(), std::vector<float>(block))
        , _out(processor->outputChannels(), std::vector<float>(block)) {
        const auto error = processor->allocate(rate, block);
        EXPECT_FALSE(error) << error->localizedDescription();
    }
    ~Rendering() { processor->release(); }

    void block(std::uint32_t frames) {
        std::vector<const float*> inputs;
        std::vector<float*> outputs;
        for (std::size_t channel = 0; channel < _in.size(); ++channel) {
            _in[channel] = tonewright::test::sine(
                440, 0.5, frames, _rate, static_cast<double>(time) + 20.0 * static_cast<double>(channel));
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
    void block() { block(_block); }

    /// Renders `blocks` blocks and returns the largest magnitude; infinity if a sample is not finite.
    float loudestOf(int blocks) {
        float loudest = 0;
        for (; blocks > 0; --blocks) {
            block();
            for (const auto& plane : _out) loudest = std::max(loudest, tonewright::test::peak(plane));
        }
        return loudest;
    }

    [[nodiscard]] const std::vector<float>& in(std::size_t channel) const { return _in[channel]; }
    [[nodiscard]] const std::vector<float>& out(std::size_t channel) const { return _out[channel]; }

    const std::shared_ptr<NodeProcessor> processor;
    std::int64_t time = 0;

  private:
    double _rate;
    std::uint32_t _block;
    std::vector<std::vector<float>> _in, _out;
};

} // namespace platform::test
