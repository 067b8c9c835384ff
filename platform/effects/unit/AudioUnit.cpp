// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/unit/AudioUnit.hpp"

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <cmath>

namespace platform::lv2 {

AudioUnit::AudioUnit(std::shared_ptr<EffectProcessor> processor)
    : _processor(std::move(processor))
    , _silentRun(std::make_shared<SilentRun>(_processor, _processor->sampleRate())) {}

std::string AudioUnit::contextName() const {
    const std::scoped_lock lock(_mutex);
    return _contextName;
}

void AudioUnit::setContextName(std::string name) {
    const std::scoped_lock lock(_mutex);
    _contextName = std::move(name);
}

const std::vector<Preset>& AudioUnit::presets() const {
    const std::scoped_lock lock(_mutex);
    if (!_presets) {
        const std::scoped_lock worldLock(_processor->world()->mutex());
        _presets = _processor->world()->presets();
    }
    return *_presets;
}

std::optional<std::vector<AUAudioUnitPreset>> AudioUnit::factoryPresets() const {
    if (presets().empty()) return std::nullopt;
    std::vector<AUAudioUnitPreset> list;
    for (const Preset& preset : presets()) {
        list.emplace_back(static_cast<std::int64_t>(list.size()), preset.label);
    }
    return list;
}

std::optional<AUAudioUnitPreset> AudioUnit::currentPreset() const {
    const std::scoped_lock lock(_mutex);
    return _currentPreset;
}

void AudioUnit::setCurrentPreset(const std::optional<AUAudioUnitPreset>& preset) {
    std::optional<AUAudioUnitPreset> current;
    if (preset) {
        const auto& known = presets();
        if (preset->number() < 0 || static_cast<std::size_t>(preset->number()) >= known.size()) {
            warn("The effect \"" + _processor->plugin().name + "\" has no factory preset " +
                 std::to_string(preset->number()) + ".");
            return;
        }
        const Preset& wanted = known[static_cast<std::size_t>(preset->number())];
        if (const auto failure = _processor->restorePreset(wanted.uri)) {
            warn(failure->localizedDescription());
            return;
        }
        current.emplace(preset->number(), wanted.label);
    }
    const std::scoped_lock lock(_mutex);
    _currentPreset = std::move(current);
}

std::vector<std::string> AudioUnit::MIDIOutputNames() const {
    std::vector<std::string> names;
    for (const Port& port : _processor->plugin().ports) {
        if (port.kind == PortKind::AtomOutput && port.supportsMidi) names.push_back(port.name);
    }
    return names;
}

void AudioUnit::setMIDIOutputEventBlock(MIDIOutputEventBlock block) {
    MIDIOutputDelivery* midi = _processor->midi();
    if (midi == nullptr) return;
    if (!block) {
        midi->setBlock(nullptr);
        return;
    }
    midi->setBlock([block = std::move(block)](std::int64_t sampleTime, std::uint8_t cable,
                                              std::int64_t length, const std::uint8_t* data) {
        return SilentRun::isSilent(sampleTime) ? 0 : block(sampleTime, cable, length, data);
    });
}

bool AudioUnit::sendMIDIEvent(std::span<const std::uint8_t> message) {
    for (const Port& port : _processor->plugin().ports) {
        if (port.kind != PortKind::AtomInput || !port.supportsMidi) continue;
        return _processor->sendMidi(port.index, message);
    }
    return false;
}

std::vector<AUParameter> AudioUnit::parameters() const {
    std::vector<AUParameter> parameters;
    for (const Port& port : _processor->plugin().ports) {
        if (port.kind == PortKind::ControlInput || port.kind == PortKind::ControlOutput) {
            parameters.push_back(parameterAt(port, _processor->sampleRate()));
        }
    }
    return parameters;
}

float AudioUnit::parameterValue(std::uint32_t address) const {
    return _processor->value(address);
}

void AudioUnit::setParameterValue(std::uint32_t address, float value) {
    const auto& ports = _processor->plugin().ports;
    if (address >= ports.size() || ports[address].kind != PortKind::ControlInput || std::isnan(value)) return;
    if (ports[address].isBounded) {
        const AUParameter parameter = parameterAt(ports[address], _processor->sampleRate());
        value = std::clamp(value, parameter.minValue, parameter.maxValue);
    }
    _processor->setValue(address, value);
}

std::vector<std::uint8_t> AudioUnit::fullState() const {
    const auto text = _processor->saveState();
    if (!text) {
        warn(text.error().localizedDescription());
        return {};
    }
    return {text.value().begin(), text.value().end()};
}

std::optional<Error> AudioUnit::setFullState(std::span<const std::uint8_t> state) {
    if (auto failure = _processor->restoreState(std::string(state.begin(), state.end()))) return failure;
    const std::scoped_lock lock(_mutex);
    _currentPreset.reset();
    return std::nullopt;
}

void AudioUnit::requestViewController(std::function<void(std::shared_ptr<UIViewController>)> completion) {
    auto self = std::static_pointer_cast<AudioUnit>(shared_from_this());
    DispatchQueue::main().async([self = std::move(self), completion = std::move(completion)]() mutable {
        makeEffectViewController(std::move(self), std::move(completion));
    });
}

} // namespace platform::lv2
