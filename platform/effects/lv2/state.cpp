// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Saving and restoring what was set: through lilv, which knows the presets' format and the files in them.
#include "platform/effects/lv2/Processor.hpp"
#include "platform/foundation/product.hpp"

#include "platform/effects/lv2/UridMap.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace platform::lv2 {
namespace {

std::optional<float> numberOf(const void* value, std::uint32_t size, LV2_URID type) {
    const Urids& urids = Urids::shared();
    const auto as = [&]<class T>(T number) -> std::optional<float> {
        if (size != sizeof number) return std::nullopt;
        std::memcpy(&number, value, sizeof number);
        const auto result = static_cast<float>(number);
        return std::isfinite(result) ? std::optional(result) : std::nullopt;
    };
    if (type == urids.atomFloat) return as(float{});
    if (type == urids.atomDouble) return as(double{});
    if (type == urids.atomInt || type == urids.atomBool) return as(std::int32_t{});
    if (type == urids.atomLong) return as(std::int64_t{});
    return std::nullopt;
}

// Replaces the values of the ports in lilv's text, where each symbol is followed by its value.
void writeAllDigits(std::string& text, const ControlPorts& values, const std::vector<Port>& ports) {
    constexpr std::string_view Key = "pset:value ";
    for (const Port& port : ports) {
        if (port.kind != PortKind::ControlInput) continue;
        const std::size_t symbol = text.find("lv2:symbol \"" + port.symbol + '"');
        const std::size_t key = symbol == std::string::npos ? symbol : text.find(Key, symbol);
        if (key == std::string::npos) continue;
        const std::size_t begin = key + Key.size();
        const std::size_t end = text.find_first_of(" \t\n;]", begin);
        if (end != std::string::npos) text.replace(begin, end - begin, allDigits({values.value(port.index)}));
    }
}

} // namespace

const Port* Processor::portNamed(std::string_view symbol) const {
    const auto found = std::find_if(_plugin.ports.begin(), _plugin.ports.end(),
                                    [&](const Port& port) { return port.symbol == symbol; });
    return found == _plugin.ports.end() ? nullptr : &*found;
}

Processor::CapturedState Processor::captureState() const {
    struct Asked {
        const Processor* self;
        float value;
    } asked{this, 0};
    const auto getValue = [](const char* symbol, void* context, std::uint32_t* size,
                             std::uint32_t* type) -> const void* {
        auto& [self, value] = *static_cast<Asked*>(context);
        *size = 0;
        *type = 0;
        const Port* port = self->portNamed(symbol);
        if (port == nullptr || port->kind != PortKind::ControlInput) return nullptr;
        value = self->_buffers->controls.value(port->index);
        *size = sizeof value;
        *type = Urids::shared().atomFloat;
        return &value;
    };
    const std::scoped_lock lock(_world->mutex());
    StateRecorder recorder(*_keeper.get()->get());
    State state(lilv_state_new_from_instance(
        _world->plugin(), recorder.instance(), UridMap::shared().mapFeature(), nullptr, nullptr, nullptr,
        nullptr, getValue, &asked, LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE,
        _keeper.get()->features().list()));
    return {.state = std::move(state), .numbers = recorder.numbers()};
}

// The gate is closed, or the plug-in allows it concurrently with `run`.
void Processor::restore(const LilvState& state) {
    const auto setValue = [](const char* symbol, void* context, const void* value, std::uint32_t size,
                             std::uint32_t type) {
        auto& self = *static_cast<Processor*>(context);
        const Port* port = self.portNamed(symbol);
        const auto number = numberOf(value, size, type);
        if (port != nullptr && port->kind == PortKind::ControlInput && number) {
            self._buffers->controls.setValue(port->index, *number);
        }
    };
    lilv_state_restore(&state, _keeper.get()->get(), setValue, this, 0,
                       _keeper.get()->features().listForRestore());
}

std::optional<Error> Processor::applyState(const LilvState& state) {
    if (_keeper.get() == nullptr) return unusable(_plugin, "there is no instance of it");
    if (_plugin.restoresWhileRunning) {
        restore(state);
        return std::nullopt;
    }
    const Gate::Closure closed(_gate);
    if (!closed) return doesNotReturn();
    restore(state);
    return std::nullopt;
}

void Processor::loadDefaultState() {
    State state;
    {
        const std::scoped_lock lock(_world->mutex());
        state.reset(lilv_state_new_from_world(_world->get(), UridMap::shared().mapFeature(),
                                              lilv_plugin_get_uri(_world->plugin())));
    }
    const std::scoped_lock lock(_instanceMutex);
    if (state) restore(*state); // before the first run
}

std::string Processor::saveState() const {
    const std::scoped_lock lock(_instanceMutex);
    const CapturedState captured = _keeper.get() != nullptr ? captureState() : CapturedState{};
    const auto& [state, numbers] = _keeper.get() != nullptr ? captured : _kept;
    if (!state) return {};
    const std::scoped_lock worldLock(_world->mutex());
    char* text =
        lilv_state_to_string(_world->get(), UridMap::shared().mapFeature(), UridMap::shared().unmapFeature(),
                             state.get(), product::StateURI, nullptr);
    std::string kept = text == nullptr ? std::string() : std::string(text);
    lilv_free(text);
    if (_keeper.get() != nullptr) writeAllDigits(kept, _buffers->controls, _plugin.ports);
    return withAllDigits(kept, numbers);
}

std::optional<Error> Processor::restoreState(const std::string& text) {
    State state;
    if (!text.empty()) { // lilv reads past the end of an empty one
        const std::scoped_lock lock(_world->mutex());
        state.reset(lilv_state_new_from_string(_world->get(), UridMap::shared().mapFeature(), text.c_str()));
    }
    const LilvNode* owner = state ? lilv_state_get_plugin_uri(state.get()) : nullptr;
    if (owner == nullptr || _plugin.uri != lilv_node_as_string(owner)) {
        return Error("LV2", 2, "The state does not belong to the effect \"" + _plugin.name + "\".");
    }
    const std::scoped_lock lock(_instanceMutex);
    return applyState(*state);
}

std::optional<Error> Processor::restorePreset(const std::string& uri) {
    State state;
    {
        const std::scoped_lock lock(_world->mutex());
        const Node node = _world->uri(uri.c_str());
        lilv_world_load_resource(_world->get(), node.get());
        state.reset(lilv_state_new_from_world(_world->get(), UridMap::shared().mapFeature(), node.get()));
    }
    if (!state) {
        return Error("LV2", 3,
                     "The preset " + uri + " of the effect \"" + _plugin.name + "\" cannot be read.");
    }
    const std::scoped_lock lock(_instanceMutex);
    return applyState(*state);
}

} // namespace platform::lv2
