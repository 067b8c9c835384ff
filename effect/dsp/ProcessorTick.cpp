// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Computes the parameters of the signal path from the controls, the MIDI performance and the envelope: once
// per tick, and without smoothing after a reset.

#include "Processor.hpp"

#include <algorithm>
#include <cmath>

namespace tonewright::effect {
namespace {

// The ranges of the MIDI controllers.
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

} // namespace

ResonatorSetting Processor::resonatorSetting() const noexcept {
    return {.rootNote = rootNote(),
            .voicing = static_cast<Voicing>(value(Parameter::Voicing)),
            .chord = _performance.chord(),
            .bendSemitones = _performance.bendSemitones(),
            .decaySeconds = std::exp2(_smooth[DecayOctaves].value),
            .damping = _smooth[Damping].value,
            .glideMilliseconds = value(Parameter::Glide)};
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
        resetSound(); // the wet path was off; it starts from silence, with the current settings
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

} // namespace tonewright::effect
