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
constexpr float MaximumInput = 1000.F; // +60 dB: beyond it, it is not sound any more
constexpr float CeilingBegins = 2.F;   // +6 dB: below it the wet path is untouched

// How far the player's controllers reach.
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

// Resonances add up; keep an accident from becoming a pain.
float ceiling(float x) noexcept {
    const float size = std::abs(x);
    if (size <= CeilingBegins) {
        return x;
    }
    return std::copysign(CeilingBegins * (1.F + softClip((size - CeilingBegins) / CeilingBegins)), x);
}

} // namespace

Processor::Processor(double sampleRate)
    : sampleRate_{sampleRate}
    , envelope_{sampleRate}
    , detector_{sampleRate}
    , drive_{sampleRate}
    , filter_{sampleRate}
    , bank_{sampleRate}
    , smoothing_{tickCoefficient(sampleRate, SmoothingSeconds)}
    , enabledStep_{static_cast<float>(TickFrames / (sampleRate * BypassSeconds))}
    , bankGateCoefficient_{tickCoefficient(sampleRate, BankGateSeconds)}
    , analyser_{sampleRate} {
    setParameters(defaultValues());
    reset();
}

void Processor::reset() noexcept {
    performance_.restore(performance_.snapshot());
    envelope_.reset();
    detector_.reset();
    notes_.reset();
    for (auto& delay : dryDelay_) {
        delay.reset();
    }
    analyser_.reset();
    tickPhase_ = 0;
    settle_ = true;
    resetSound();
}

void Processor::restore(const PerformanceSnapshot& snapshot) noexcept {
    performance_.restore(snapshot);
    settle_ = true;
}

float Processor::rootNote() const noexcept {
    const int played = performance_.tuningNote();
    return played >= 0 ? static_cast<float>(played) : value(Parameter::Note);
}

ResonatorSetting Processor::resonatorSetting() const noexcept {
    return {.rootNote = rootNote(),
            .voicing = static_cast<Voicing>(value(Parameter::Voicing)),
            .chord = performance_.chord(),
            .bendSemitones = performance_.bendSemitones(),
            .decaySeconds = std::exp2(smooth_[DecayOctaves].value),
            .damping = smooth_[Damping].value,
            .glideMilliseconds = value(Parameter::Glide)};
}

void Processor::setParameters(const ParameterValues& values) noexcept {
    if (!settle_ && values == raw_) {
        return;
    }
    const float noteBefore = value(Parameter::Note);
    raw_ = values;
    const auto table = parameterTable();
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        values_[i] = sanitised(table[i], values[i]);
    }
    envelope_.setTimes(value(Parameter::Attack), value(Parameter::Release));
    detector_.setSensitivity(value(Parameter::Sensitivity) / 100.F);
    if (settle_) {
        settle_ = false;
        resetSound();
    } else if (value(Parameter::Note) != noteBefore) {
        performance_.forgetTuning(); // whoever moved last, hand or keys, sets the tuning
    }
}

void Processor::aimSmoothers() noexcept {
    const int played = performance_.tuningNote();
    const float tracked = played < 0
                              ? performance_.bendSemitones()
                              : static_cast<float>(played) + performance_.bendSemitones() - TrackingCentre;
    smooth_[DriveDecibels].target = value(Parameter::Drive) + BreathDecibels * performance_.breath() +
                                    VelocityDecibels * performance_.velocity();
    smooth_[Bias].target = value(Parameter::Bias) / 100.F;
    smooth_[EnvelopeDrive].target = value(Parameter::EnvelopeToDrive);
    smooth_[CutoffNote].target =
        noteOf(value(Parameter::Cutoff)) + value(Parameter::KeyTrack) / 100.F * tracked +
        ModWheelSemitones * performance_.modWheel() + BrightnessSemitones * performance_.brightness() +
        VelocitySemitones * performance_.velocity();
    smooth_[Resonance].target =
        std::clamp(value(Parameter::Resonance) / 100.F + ResonanceReach * performance_.resonance(), 0.F, 1.F);
    smooth_[EnvelopeCutoff].target = value(Parameter::EnvelopeToCutoff);
    smooth_[DecayOctaves].target =
        std::log2(value(Parameter::Decay)) + DecayOctaveReach * performance_.decay();
    smooth_[Damping].target = value(Parameter::Damping) / 100.F;
    smooth_[ResonatorShare].target = value(Parameter::ResonatorMix) / 100.F;
    smooth_[WetShare].target = value(Parameter::Mix) / 100.F;
    smooth_[OutputGain].target = std::pow(10.F, value(Parameter::Output) / 20.F);
}

void Processor::resetSound() noexcept {
    aimSmoothers();
    for (auto& smoothed : smooth_) {
        smoothed.snap(smoothed.target);
    }
    bankGate_.snap(1.F);
    bankGateRamp_.snap(1.F);
    wetRamp_.snap(smooth_[WetShare].value);
    bankRamp_.snap(smooth_[ResonatorShare].value);
    gainRamp_.snap(smooth_[OutputGain].value);
    enabledRamp_.snap(value(Parameter::Enabled));
    cutoffHertz_ = hertzOf(smooth_[CutoffNote].value);
    drive_.reset({static_cast<Shape>(value(Parameter::Shape)),
                  static_cast<Oversampling>(value(Parameter::Oversampling))},
                 smooth_[DriveDecibels].value, smooth_[Bias].value);
    filter_.reset(static_cast<FilterMode>(value(Parameter::FilterMode)), cutoffHertz_,
                  smooth_[Resonance].value);
    bank_.reset(resonatorSetting());
}

void Processor::beginTick() noexcept {
    const float enabledTarget = value(Parameter::Enabled);
    if (enabledRamp_.restsAt(0.F) && enabledTarget > 0.F) {
        resetSound(); // the wet path stood still: it begins from silence, at the present settings
        enabledRamp_.snap(0.F);
    }
    const float enabled = enabledRamp_.end();
    enabledRamp_.beginTick(enabled + std::clamp(enabledTarget - enabled, -enabledStep_, enabledStep_));

    aimSmoothers();
    for (auto& smoothed : smooth_) {
        smoothed.advance(smoothing_);
    }
    if (performance_.takeSoundOff()) {
        bankGate_.target = 0.F;
    }
    bankGate_.advance(bankGateCoefficient_);
    if (bankGateRamp_.end() == 0.F) {
        bank_.silence();
        bankGate_.target = 1.F;
    }
    bankGateRamp_.beginTick(bankGate_.value);
    wetRamp_.beginTick(smooth_[WetShare].value);
    bankRamp_.beginTick(smooth_[ResonatorShare].value);
    gainRamp_.beginTick(smooth_[OutputGain].value);
    if (enabledRamp_.restsAt(0.F)) {
        return;
    }
    const float reading = envelope_.reading();
    const float driveDecibels =
        std::clamp(smooth_[DriveDecibels].value + reading * smooth_[EnvelopeDrive].value, -24.F, 60.F);
    drive_.beginTick({static_cast<Shape>(value(Parameter::Shape)),
                      static_cast<Oversampling>(value(Parameter::Oversampling))},
                     driveDecibels, smooth_[Bias].value);
    const float cutoffNote = smooth_[CutoffNote].value + reading * smooth_[EnvelopeCutoff].value;
    cutoffHertz_ = std::clamp(hertzOf(cutoffNote), 20.F, filter_.highestCutoff());
    filter_.beginTick(static_cast<FilterMode>(value(Parameter::FilterMode)), cutoffHertz_,
                      smooth_[Resonance].value);
    bank_.beginTick(resonatorSetting());
}

void Processor::process(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
                        std::uint32_t frames, std::uint32_t firstFrame, MidiOutbox& outbox) noexcept {
    std::uint32_t done = 0;
    while (done < frames) {
        if (tickPhase_ == 0) {
            beginTick();
        }
        const auto n =
            static_cast<int>(std::min(frames - done, static_cast<std::uint32_t>(TickFrames - tickPhase_)));
        segment(inLeft + done, inRight + done, outLeft + done, outRight + done, n, firstFrame + done, outbox);
        tickPhase_ = (tickPhase_ + n) % TickFrames;
        done += static_cast<std::uint32_t>(n);
    }
}

void Processor::listen(const TickBuffer& left, const TickBuffer& right, int n, std::uint32_t firstFrame,
                       MidiOutbox& outbox) noexcept {
    const auto mode = static_cast<MidiOut>(value(Parameter::MidiOut));
    const bool sends = mode != MidiOut::Off && value(Parameter::Enabled) > 0.F;
    if (!sends) {
        notes_.end(firstFrame, outbox);
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
        const std::uint32_t frame = firstFrame + static_cast<std::uint32_t>(i);
        envelope_.push(left[i], right[i]);
        notes_.advance(frame, outbox);
        const std::uint8_t velocity = detector_.push(left[i], right[i]);
        if (velocity == 0) {
            continue;
        }
        onsetCount_ = (onsetCount_ + 1) % 4096;
        if (sends) {
            const float pitch = mode == MidiOut::Held ? rootNote() : value(Parameter::Note);
            const float length = value(Parameter::Gate) / 1000.F * static_cast<float>(sampleRate_);
            notes_.onset(static_cast<std::uint8_t>(pitch), velocity, static_cast<int>(length), frame, outbox);
        }
    }
}

void Processor::wetPath(TickBuffer& left, TickBuffer& right, int n) noexcept {
    drive_.process(left.data(), right.data(), n);
    filter_.process(left.data(), right.data(), n);
    if (bankRamp_.restsAt(0.F)) {
        bank_.silence();
    } else {
        TickBuffer bankLeft{};
        TickBuffer bankRight{};
        bank_.process(left.data(), right.data(), bankLeft.data(), bankRight.data(), n);
        for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
            const float share = bankRamp_.next();
            const float gate = bankGateRamp_.next();
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
    dryDelay_[0].process(left.data(), dryLeft.data(), n);
    dryDelay_[1].process(right.data(), dryRight.data(), n);

    if (enabledRamp_.restsAt(0.F)) {
        std::copy_n(dryLeft.data(), n, outLeft);
        std::copy_n(dryRight.data(), n, outRight);
    } else {
        TickBuffer wetLeft = left;
        TickBuffer wetRight = right;
        wetPath(wetLeft, wetRight, n);
        float check = 0.F;
        for (std::size_t i = 0; i < count; ++i) {
            const float wet = wetRamp_.next();
            const float gain = gainRamp_.next();
            const float enabled = enabledRamp_.next();
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
    if (metering_) {
        meter(left, right, outLeft, outRight, n);
    }
}

void Processor::meter(const TickBuffer& inLeft, const TickBuffer& inRight, const float* outLeft,
                      const float* outRight, int n) noexcept {
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
        display_.inputPeaks[0] = std::max(display_.inputPeaks[0], std::abs(inLeft[i]));
        display_.inputPeaks[1] = std::max(display_.inputPeaks[1], std::abs(inRight[i]));
        display_.outputPeaks[0] = std::max(display_.outputPeaks[0], std::abs(outLeft[i]));
        display_.outputPeaks[1] = std::max(display_.outputPeaks[1], std::abs(outRight[i]));
        analyser_.push(0.5F * (outLeft[i] + outRight[i]));
    }
}

void Processor::setMetering(bool on) noexcept {
    if (on && !metering_) {
        analyser_.reset();
        display_ = {};
    }
    metering_ = on;
}

DisplayFrame Processor::takeDisplay() noexcept {
    DisplayFrame frame = display_;
    frame.envelope = envelope_.reading();
    frame.cutoffHertz = cutoffHertz_;
    frame.rootNote = rootNote();
    frame.onsets = static_cast<float>(onsetCount_);
    analyser_.analyse(frame.spectrum);
    display_.inputPeaks.fill(0.F);
    display_.outputPeaks.fill(0.F);
    return frame;
}

} // namespace tonewright::effect
