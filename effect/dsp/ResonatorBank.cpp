// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ResonatorBank.hpp"

#include "Denormals.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace tonewright::effect {
namespace {

constexpr float LowestHertz = 16.F;
constexpr float ShortestDelay = 4.F;
// A delay that grows by d frames per frame plays its contents at the speed 1 - d. With d = 0.5 that sounds
// like a tape slowed by hand; faster changes sound like a fault.
constexpr float FastestSlide = 0.5F;

using Intervals = std::array<float, ResonatorBank::VoiceCount>;
constexpr std::array<Intervals, VoicingCount> VoicingIntervals{{
    {0.F, 0.F, 0.F, 0.F},
    {0.F, 12.F, -12.F, 24.F},
    {0.F, 7.F, 12.F, 19.F},
    {0.F, 4.F, 7.F, 12.F},
    {0.F, 3.F, 7.F, 12.F},
    {0.F, 5.F, 7.F, 12.F},
    {0.F, 12.F, 7.F, 19.F}, // used until a chord has been held
}};
// The strings are slightly detuned against each other, so that they sound like separate strings.
constexpr Intervals VoiceDetune{0.F, 0.05F, -0.04F, 0.03F};
constexpr Intervals UnisonDetune{0.F, 0.08F, -0.07F, 0.03F};
constexpr std::array<float, 2> ChannelDetune{-0.015F, 0.015F};

float hertzOf(float note) noexcept {
    return 440.F * std::exp2((note - 69.F) / 12.F);
}

// Third-order Lagrange interpolation. Its gain never exceeds 1, so the feedback loop stays stable.
float interpolated(const std::vector<float>& line, std::size_t mask, std::size_t write,
                   float delay) noexcept {
    const auto whole = static_cast<std::size_t>(delay);
    const float t = delay - static_cast<float>(whole);
    const float a = line[(write - whole + 1) & mask];
    const float b = line[(write - whole) & mask];
    const float c = line[(write - whole - 1) & mask];
    const float d = line[(write - whole - 2) & mask];
    const float t1 = t + 1.F;
    const float t2 = t - 1.F;
    const float t3 = t - 2.F;
    return -t * t2 * t3 / 6.F * a + t1 * t2 * t3 / 2.F * b - t1 * t * t3 / 2.F * c + t1 * t * t2 / 6.F * d;
}

} // namespace

ResonatorBank::ResonatorBank(double sampleRate)
    : _sampleRate{static_cast<float>(sampleRate)} {
    const auto needed = static_cast<std::size_t>(sampleRate / static_cast<double>(LowestHertz)) + 8;
    const std::size_t size = std::bit_ceil(needed);
    _mask = size - 1;
    _longestDelay = static_cast<float>(needed - 6);
    for (auto& voice : _voices) {
        for (auto& string : voice.channels) {
            string.line.assign(size, 0.F);
        }
    }
}

float ResonatorBank::targetNote(const ResonatorSetting& setting, std::size_t voice) const noexcept {
    if (setting.voicing == Voicing::HeldChord && !setting.chord.empty()) {
        const std::size_t count = setting.chord.size();
        // If there are fewer notes than strings, the other strings double the notes an octave higher.
        const float octave = voice < count ? 0.F : 12.F;
        // NOLINTNEXTLINE(clang-analyzer-core.DivideZero): the chord is not empty here
        return static_cast<float>(setting.chord[voice % count]) + octave + VoiceDetune[voice];
    }
    const auto& detune = setting.voicing == Voicing::Unison ? UnisonDetune : VoiceDetune;
    return setting.rootNote + VoicingIntervals[static_cast<std::size_t>(setting.voicing)][voice] +
           detune[voice];
}

float ResonatorBank::delayFor(float note) const noexcept {
    const float hertz = std::clamp(hertzOf(note), LowestHertz, _sampleRate / (2.F * ShortestDelay));
    // The damping filter also delays the fundamental, so its delay is subtracted from the line's.
    const float omega = 2.F * std::numbers::pi_v<float> * hertz / _sampleRate;
    const float filterDelay =
        std::atan2(_lowpassPole * std::sin(omega), 1.F - _lowpassPole * std::cos(omega)) / omega;
    return std::clamp(_sampleRate / hertz - filterDelay, ShortestDelay, _longestDelay);
}

void ResonatorBank::updateDamping(float damping) noexcept {
    if (damping != _damping) {
        _damping = damping;
        const float corner = std::min(18000.F * std::pow(0.045F, damping), 0.45F * _sampleRate);
        _lowpassPole = std::exp(-2.F * std::numbers::pi_v<float> * corner / _sampleRate);
    }
}

void ResonatorBank::aim(String& string, float note, const ResonatorSetting& setting, bool atOnce) noexcept {
    string.lowpass = flushed(string.lowpass);
    const bool sameAim = string.aimedNote == note && string.aimedDecay == setting.decaySeconds &&
                         string.aimedPole == _lowpassPole;
    if (sameAim && !atOnce && string.delay == string.wantedDelay) {
        string.delayRamp.beginTick(string.delay);
        string.feedback.beginTick(string.feedback.end());
        string.level.beginTick(string.level.end());
        return;
    }
    if (!sameAim) {
        string.aimedNote = note;
        string.aimedDecay = setting.decaySeconds;
        string.aimedPole = _lowpassPole;
        string.wantedDelay = delayFor(note);
    }
    const float reach = FastestSlide * static_cast<float>(TickFrames);
    string.delay = atOnce ? string.wantedDelay
                          : std::clamp(string.wantedDelay, string.delay - reach, string.delay + reach);
    const float feedback = std::pow(10.F, -3.F * string.delay / (_sampleRate * setting.decaySeconds));
    // The loop amplifies noise by 1 / sqrt(1 - f^2) and a tone at its pitch by 1 / (1 - f). The level is a
    // compromise between the two.
    const float level = 0.5F * std::pow(1.F - feedback * feedback, 0.55F);
    if (atOnce) {
        string.delayRamp.snap(string.delay);
        string.feedback.snap(feedback);
        string.level.snap(level);
    } else {
        string.delayRamp.beginTick(string.delay);
        string.feedback.beginTick(feedback);
        string.level.beginTick(level);
    }
}

void ResonatorBank::silence() noexcept {
    if (_silent) {
        return;
    }
    _silent = true;
    for (auto& voice : _voices) {
        for (auto& string : voice.channels) {
            std::fill(string.line.begin(), string.line.end(), 0.F);
            string.lowpass = 0.F;
        }
    }
}

void ResonatorBank::reset(const ResonatorSetting& setting) noexcept {
    silence();
    updateDamping(setting.damping);
    for (std::size_t v = 0; v < VoiceCount; ++v) {
        Voice& voice = _voices[v];
        voice.pitch = voice.target = targetNote(setting, v);
        for (std::size_t c = 0; c < 2; ++c) {
            aim(voice.channels[c], voice.pitch + setting.bendSemitones + ChannelDetune[c], setting, true);
        }
    }
}

void ResonatorBank::beginTick(const ResonatorSetting& setting) noexcept {
    updateDamping(setting.damping);
    // The time constant is a third of the glide time, so that 95 % of the change is reached after the glide
    // time.
    const float glide = tickCoefficient(static_cast<double>(_sampleRate),
                                        static_cast<double>(setting.glideMilliseconds) / 3000.);
    for (std::size_t v = 0; v < VoiceCount; ++v) {
        Voice& voice = _voices[v];
        voice.target = targetNote(setting, v);
        voice.pitch += glide * (voice.target - voice.pitch);
        if (std::abs(voice.target - voice.pitch) < 2e-4F) {
            voice.pitch = voice.target;
        }
        for (std::size_t c = 0; c < 2; ++c) {
            aim(voice.channels[c], voice.pitch + setting.bendSemitones + ChannelDetune[c], setting, false);
        }
    }
}

void ResonatorBank::process(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
                            int n) noexcept {
    _silent = false;
    const std::array<const float*, 2> in{inLeft, inRight};
    const std::array<float*, 2> out{outLeft, outRight};
    for (std::size_t c = 0; c < 2; ++c) {
        TickBuffer sum{};
        for (auto& voice : _voices) {
            String& string = voice.channels[c];
            for (int i = 0; i < n; ++i) {
                const float heard = interpolated(string.line, _mask, string.write, string.delayRamp.next());
                string.lowpass = heard + _lowpassPole * (string.lowpass - heard);
                string.line[string.write] =
                    in[c][i] * string.level.next() + string.feedback.next() * string.lowpass;
                string.write = (string.write + 1) & _mask;
                sum[static_cast<std::size_t>(i)] += string.lowpass;
            }
        }
        std::copy_n(sum.data(), n, out[c]);
    }
}

} // namespace tonewright::effect
