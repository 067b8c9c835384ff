// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect and the sound that it renders block by block, without an engine. One thread renders.
#pragma once

#include "platform/effects/AUAudioUnit.hpp"
#include "platform/effects/ComponentProvider.hpp"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sched.h>
#include <string>
#include <thread>
#include <vector>

namespace bench {

inline constexpr const char* BundledEffect = "https://tonewright.example/lv2/tonewright";
inline constexpr double Rate = 48000;

enum class Where { InProcess, OwnProcess };

/// Creates a unit of the effect, with its third preset if it has one. Ends the program if that fails.
inline std::shared_ptr<platform::AUAudioUnit> makeUnit(const std::string& uri, Where where) {
    ::setenv("TONEWRIGHT_EFFECT_PROCESS", where == Where::OwnProcess ? "own" : "host", 1);
    static const auto provider = platform::makeLv2ComponentProvider();
    const auto unit = provider->instantiate({{}, "", "", uri});
    if (!unit) {
        std::fprintf(stderr, "%s\n", unit.error().localizedDescription().c_str());
        std::exit(1);
    }
    const auto presets = unit.value()->factoryPresets();
    if (presets && presets->size() > 3) unit.value()->setCurrentPreset(presets->at(3));
    return unit.value();
}

/// Stereo sound, one plane after the other for each block.
using Sound = std::vector<float>;

class Track {
  public:
    Track(std::shared_ptr<platform::AUAudioUnit> itsUnit, std::uint32_t frames, bool isOffline)
        : unit(std::move(itsUnit))
        , _processor(unit->processor())
        , _frames(frames) {
        _processor->setOffline(isOffline);
        _processor->setBlockFrames(frames);
        if (const auto failure = _processor->allocate(Rate, frames)) {
            std::fprintf(stderr, "%s\n", failure->localizedDescription().c_str());
            std::exit(1);
        }
    }
    ~Track() { _processor->release(); }
    Track(const Track&) = delete;
    Track& operator=(const Track&) = delete;

    /// Renders one block from `in` into `out`, which have two planes each. The effect gets the first planes
    /// that it has inputs for.
    void render(const float* in, float* out, std::int64_t sampleTime) noexcept {
        const float* const inputs[] = {in, in + _frames};
        float* const outputs[] = {out, out + _frames};
        _processor->process({inputs, _processor->inputChannels(), _frames},
                            {outputs, _processor->outputChannels(), _frames}, sampleTime);
    }

    const std::shared_ptr<platform::AUAudioUnit> unit;

  private:
    const std::shared_ptr<platform::NodeProcessor> _processor;
    const std::uint32_t _frames;
};

/// Returns `blocks` blocks of a chord, whose level changes so that an effect's envelope moves.
inline Sound chord(std::size_t blocks, std::uint32_t frames) {
    Sound sound(blocks * 2 * frames);
    for (std::size_t block = 0; block < blocks; ++block) {
        for (std::size_t i = 0; i < frames; ++i) {
            const double time = static_cast<double>(block * frames + i) / Rate;
            const double level = 0.3 * (1.2 + std::sin(2 * M_PI * 3 * time));
            float* const planes = &sound[block * 2 * frames];
            planes[i] = static_cast<float>(
                level * (std::sin(2 * M_PI * 220 * time) + 0.3 * std::sin(2 * M_PI * 1300 * time)));
            planes[frames + i] = static_cast<float>(level * std::sin(2 * M_PI * 277 * time));
        }
    }
    return sound;
}

/// Sets the calling thread to the priority of an audio thread. Returns false if the system refuses.
inline bool becomeRealtime() {
    sched_param parameter{};
    parameter.sched_priority = 20;
    return ::sched_setscheduler(0, SCHED_FIFO, &parameter) == 0;
}

/// Returns the duration of a block.
inline std::chrono::nanoseconds period(std::uint32_t frames) {
    return std::chrono::nanoseconds(static_cast<long>(1e9 * frames / Rate));
}

} // namespace bench
