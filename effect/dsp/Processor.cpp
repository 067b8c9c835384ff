// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Processor.hpp"

#include "Shapers.hpp"

#include <algorithm>
#include <cmath>

namespace tonewright::effect {
namespace {

constexpr double SmoothingSeconds = 0.010;
constexpr double BypassSeconds = 0.020;
constexpr double BankGateSeconds = 0.003;
constexpr float MaximumInput = 1000.F; // +60 dB; higher values can only be faults
constexpr float CeilingBegins = 2.F;   // +6 dB; lower levels are not changed

float safeInput(float x) noexcept {
    return std::isfinite(x) ? std::clamp(x, -MaximumInput, MaximumInput) : 0.F;
}

// A soft limiter for the wet path, because resonances can add up to dangerous peaks.
float ceiling(float x) noexcept {
    const float size = std::abs(x);
    if (size <= CeilingBegins) {
        return x;
    }
    return std::copysign(CeilingBegins * (1.F + softClip((size - CeilingBegins) / CeilingBegins)), x);
}

} // namespace

Processor::Processor(double sampleRate)
    : _sampleRate{sampleRate}
    , _envelope{sampleRate}
    , _detector{sampleRate}
    , _drive{sampleRate}
    , _filter{sampleRate}
    , _bank{sampleRate}
    , _smoothing{tickCoefficient(sampleRate, SmoothingSeconds)}
    , _enabledStep{static_cast<float>(TickFrames / (sampleRate * BypassSeconds))}
    , _bankGateCoefficient{tickCoefficient(sampleRate, BankGateSeconds)}
    , _analyser{sampleRate} {
    setParameters(defaultValues());
    reset();
}

void Processor::reset() noexcept {
    _performance.restore(_performance.snapshot());
    _envelope.reset();
    _detector.reset();
    _notes.reset();
    for (auto& delay : _dryDelay) {
        delay.reset();
    }
    _analyser.reset();
    _tickPhase = 0;
    _settle = true;
    resetSound();
}

void Processor::restore(const PerformanceSnapshot& snapshot) noexcept {
    _performance.restore(snapshot);
    _settle = true;
}

float Processor::rootNote() const noexcept {
    const int played = _performance.tuningNote();
    return played >= 0 ? static_cast<float>(played) : value(Parameter::Note);
}

void Processor::setParameters(const ParameterValues& values) noexcept {
    if (!_settle && values == _raw) {
        return;
    }
    const float noteBefore = value(Parameter::Note);
    _raw = values;
    const auto table = parameterTable();
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        _values[i] = sanitised(table[i], values[i]);
    }
    _envelope.setTimes(value(Parameter::Attack), value(Parameter::Release));
    _detector.setSensitivity(value(Parameter::Sensitivity) / 100.F);
    if (_settle) {
        _settle = false;
        resetSound();
    } else if (value(Parameter::Note) != noteBefore) {
        _performance.forgetTuning(); // the knob or the keys set the tuning, whichever was used last
    }
}

void Processor::process(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
                        std::uint32_t frames, std::uint32_t firstFrame, MidiOutbox& outbox) noexcept {
    std::uint32_t done = 0;
    while (done < frames) {
        if (_tickPhase == 0) {
            beginTick();
        }
        const auto n =
            static_cast<int>(std::min(frames - done, static_cast<std::uint32_t>(TickFrames - _tickPhase)));
        segment(inLeft + done, inRight + done, outLeft + done, outRight + done, n, firstFrame + done, outbox);
        _tickPhase = (_tickPhase + n) % TickFrames;
        done += static_cast<std::uint32_t>(n);
    }
}

void Processor::listen(const TickBuffer& left, const TickBuffer& right, int n, std::uint32_t firstFrame,
                       MidiOutbox& outbox) noexcept {
    const auto mode = static_cast<MidiOut>(value(Parameter::MidiOut));
    const bool sends = mode != MidiOut::Off && value(Parameter::Enabled) > 0.F;
    if (!sends) {
        _notes.end(firstFrame, outbox);
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
        const std::uint32_t frame = firstFrame + static_cast<std::uint32_t>(i);
        _envelope.push(left[i], right[i]);
        _notes.advance(frame, outbox);
        const std::uint8_t velocity = _detector.push(left[i], right[i]);
        if (velocity == 0) {
            continue;
        }
        _onsetCount = (_onsetCount + 1) % 4096;
        if (sends) {
            const float pitch = mode == MidiOut::Held ? rootNote() : value(Parameter::Note);
            const float length = value(Parameter::Gate) / 1000.F * static_cast<float>(_sampleRate);
            _notes.onset(static_cast<std::uint8_t>(pitch), velocity, static_cast<int>(length), frame, outbox);
        }
    }
}

void Processor::wetPath(TickBuffer& left, TickBuffer& right, int n) noexcept {
    _drive.process(left.data(), right.data(), n);
    _filter.process(left.data(), right.data(), n);
    if (_bankRamp.restsAt(0.F)) {
        _bank.silence();
    } else {
        TickBuffer bankLeft{};
        TickBuffer bankRight{};
        _bank.process(left.data(), right.data(), bankLeft.data(), bankRight.data(), n);
        for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
            const float share = _bankRamp.next();
            const float gate = _bankGateRamp.next();
            left[i] += share * (gate * bankLeft[i] - left[i]);
            right[i] += share * (gate * bankRight[i] - right[i]);
        }
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
        left[i] = ceiling(left[i]);
        right[i] = ceiling(right[i]);
    }
}

void Processor::segment(const float* inLeft, const float* inRight, float* outLeft, float* outRight, int n,
                        std::uint32_t firstFrame, MidiOutbox& outbox) noexcept {
    const auto count = static_cast<std::size_t>(n);
    TickBuffer left{};
    TickBuffer right{};
    std::transform(inLeft, inLeft + n, left.begin(), safeInput);
    std::transform(inRight, inRight + n, right.begin(), safeInput);
    listen(left, right, n, firstFrame, outbox);

    TickBuffer dryLeft{};
    TickBuffer dryRight{};
    _dryDelay[0].process(left.data(), dryLeft.data(), n);
    _dryDelay[1].process(right.data(), dryRight.data(), n);

    if (_enabledRamp.restsAt(0.F)) {
        std::copy_n(dryLeft.data(), n, outLeft);
        std::copy_n(dryRight.data(), n, outRight);
    } else {
        TickBuffer wetLeft = left;
        TickBuffer wetRight = right;
        wetPath(wetLeft, wetRight, n);
        float check = 0.F;
        for (std::size_t i = 0; i < count; ++i) {
            const float wet = _wetRamp.next();
            const float gain = _gainRamp.next();
            const float enabled = _enabledRamp.next();
            const float mixedLeft = gain * (dryLeft[i] + wet * (wetLeft[i] - dryLeft[i]));
            const float mixedRight = gain * (dryRight[i] + wet * (wetRight[i] - dryRight[i]));
            outLeft[i] = enabled == 1.F ? mixedLeft : dryLeft[i] + enabled * (mixedLeft - dryLeft[i]);
            outRight[i] = enabled == 1.F ? mixedRight : dryRight[i] + enabled * (mixedRight - dryRight[i]);
            check += std::abs(outLeft[i]) + std::abs(outRight[i]);
        }
        if (!std::isfinite(check)) {
            resetSound(); // not expected with finite input; the dry signal replaces this segment
            std::copy_n(dryLeft.data(), n, outLeft);
            std::copy_n(dryRight.data(), n, outRight);
        }
    }
    if (_metering) {
        meter(left, right, outLeft, outRight, n);
    }
}

void Processor::meter(const TickBuffer& inLeft, const TickBuffer& inRight, const float* outLeft,
                      const float* outRight, int n) noexcept {
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
        _display.inputPeaks[0] = std::max(_display.inputPeaks[0], std::abs(inLeft[i]));
        _display.inputPeaks[1] = std::max(_display.inputPeaks[1], std::abs(inRight[i]));
        _display.outputPeaks[0] = std::max(_display.outputPeaks[0], std::abs(outLeft[i]));
        _display.outputPeaks[1] = std::max(_display.outputPeaks[1], std::abs(outRight[i]));
        _analyser.push(0.5F * (outLeft[i] + outRight[i]));
    }
}

void Processor::setMetering(bool on) noexcept {
    if (on && !_metering) {
        _analyser.reset();
        _display = {};
    }
    _metering = on;
}

DisplayFrame Processor::takeDisplay() noexcept {
    DisplayFrame frame = _display;
    frame.envelope = _envelope.reading();
    frame.cutoffHertz = _cutoffHertz;
    frame.rootNote = rootNote();
    frame.onsets = static_cast<float>(_onsetCount);
    _analyser.analyse(frame.spectrum);
    _display.inputPeaks.fill(0.F);
    _display.outputPeaks.fill(0.F);
    return frame;
}

} // namespace tonewright::effect
