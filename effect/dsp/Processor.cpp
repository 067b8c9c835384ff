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
constexpr float MaximumInput = 1000.F; // +60 dB: nothing above it is sound any more
constexpr float CeilingBegins = 2.F;   // +6 dB: below it the wet path is untouched

// The range of the player's controllers.
constexpr float ModWheelSemitones = 36.F;
constexpr float BrightnessSemitones = 24.F;
constexpr float VelocitySemitones = 12.F;
constexpr float VelocityDecibels = 6.F;
constexpr float BreathDecibels = 18.F;
constexpr float ResonanceReach = 0.5F;
constexpr float DecayOctaveReach = 2.F;
constexpr float TrackingCentre = 60.F;

float noteOf(float hertz) noexcept {
    return 69.F + 12.F * std::log2(hertz / 440.F);
}

float hertzOf(float note) noexcept {
    return 440.F * std::exp2((note - 69.F) / 12.F);
}

float safeInput(float x) noexcept {
    return std::isfinite(x) ? std::clamp(x, -MaximumInput, MaximumInput) : 0.F;
}

// Resonances add up; limits an accidental peak before it hurts.
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

ResonatorSetting Processor::resonatorSetting() const noexcept {
    return {.rootNote = rootNote(),
            .voicing = static_cast<Voicing>(value(Parameter::Voicing)),
            .chord = _performance.chord(),
            .bendSemitones = _performance.bendSemitones(),
            .decaySeconds = std::exp2(_smooth[DecayOctaves].value),
            .damping = _smooth[Damping].value,
            .glideMilliseconds = value(Parameter::Glide)};
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
        _performance.forgetTuning(); // whichever was used last, the knob or the keys, sets the tuning
    }
}

void Processor::aimSmoothers() noexcept {
    const int played = _performance.tuningNote();
    const float tracked = played < 0
                              ? _performance.bendSemitones()
                              : static_cast<float>(played) + _performance.bendSemitones() - TrackingCentre;
    _smooth[DriveDecibels].target = value(Parameter::Drive) + BreathDecibels * _performance.breath() +
                                    VelocityDecibels * _performance.velocity();
    _smooth[Bias].target = value(Parameter::Bias) / 100.F;
    _smooth[EnvelopeDrive].target = value(Parameter::EnvelopeToDrive);
    _smooth[CutoffNote].target =
        noteOf(value(Parameter::Cutoff)) + value(Parameter::KeyTrack) / 100.F * tracked +
        ModWheelSemitones * _performance.modWheel() + BrightnessSemitones * _performance.brightness() +
        VelocitySemitones * _performance.velocity();
    _smooth[Resonance].target =
        std::clamp(value(Parameter::Resonance) / 100.F + ResonanceReach * _performance.resonance(), 0.F, 1.F);
    _smooth[EnvelopeCutoff].target = value(Parameter::EnvelopeToCutoff);
    _smooth[DecayOctaves].target =
        std::log2(value(Parameter::Decay)) + DecayOctaveReach * _performance.decay();
    _smooth[Damping].target = value(Parameter::Damping) / 100.F;
    _smooth[ResonatorShare].target = value(Parameter::ResonatorMix) / 100.F;
    _smooth[WetShare].target = value(Parameter::Mix) / 100.F;
    _smooth[OutputGain].target = std::pow(10.F, value(Parameter::Output) / 20.F);
}

void Processor::resetSound() noexcept {
    aimSmoothers();
    for (auto& smoothed : _smooth) {
        smoothed.snap(smoothed.target);
    }
    _bankGate.snap(1.F);
    _bankGateRamp.snap(1.F);
    _wetRamp.snap(_smooth[WetShare].value);
    _bankRamp.snap(_smooth[ResonatorShare].value);
    _gainRamp.snap(_smooth[OutputGain].value);
    _enabledRamp.snap(value(Parameter::Enabled));
    _cutoffHertz = hertzOf(_smooth[CutoffNote].value);
    _drive.reset({static_cast<Shape>(value(Parameter::Shape)),
                  static_cast<Oversampling>(value(Parameter::Oversampling))},
                 _smooth[DriveDecibels].value, _smooth[Bias].value);
    _filter.reset(static_cast<FilterMode>(value(Parameter::FilterMode)), _cutoffHertz,
                  _smooth[Resonance].value);
    _bank.reset(resonatorSetting());
}

void Processor::beginTick() noexcept {
    const float enabledTarget = value(Parameter::Enabled);
    if (_enabledRamp.restsAt(0.F) && enabledTarget > 0.F) {
        resetSound(); // the wet path was not running: it starts from silence, at the present settings
        _enabledRamp.snap(0.F);
    }
    const float enabled = _enabledRamp.end();
    _enabledRamp.beginTick(enabled + std::clamp(enabledTarget - enabled, -_enabledStep, _enabledStep));

    aimSmoothers();
    for (auto& smoothed : _smooth) {
        smoothed.advance(_smoothing);
    }
    if (_performance.takeSoundOff()) {
        _bankGate.target = 0.F;
    }
    _bankGate.advance(_bankGateCoefficient);
    if (_bankGateRamp.end() == 0.F) {
        _bank.silence();
        _bankGate.target = 1.F;
    }
    _bankGateRamp.beginTick(_bankGate.value);
    _wetRamp.beginTick(_smooth[WetShare].value);
    _bankRamp.beginTick(_smooth[ResonatorShare].value);
    _gainRamp.beginTick(_smooth[OutputGain].value);
    if (_enabledRamp.restsAt(0.F)) {
        return;
    }
    const float reading = _envelope.reading();
    const float driveDecibels =
        std::clamp(_smooth[DriveDecibels].value + reading * _smooth[EnvelopeDrive].value, -24.F, 60.F);
    _drive.beginTick({static_cast<Shape>(value(Parameter::Shape)),
                      static_cast<Oversampling>(value(Parameter::Oversampling))},
                     driveDecibels, _smooth[Bias].value);
    const float cutoffNote = _smooth[CutoffNote].value + reading * _smooth[EnvelopeCutoff].value;
    _cutoffHertz = std::clamp(hertzOf(cutoffNote), 20.F, _filter.highestCutoff());
    _filter.beginTick(static_cast<FilterMode>(value(Parameter::FilterMode)), _cutoffHertz,
                      _smooth[Resonance].value);
    _bank.beginTick(resonatorSetting());
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
            resetSound(); // cannot happen with finite input; if it does, it lasts for one segment
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
