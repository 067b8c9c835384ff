// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Saves and restores a plug-in's settings through lilv, which implements the format of states and presets.
#include "platform/effects/running/Processor.hpp"
#include "platform/foundation/product.hpp"

#include "platform/effects/lv2/UridMap.hpp"

#include "platform/effects/lv2/requirements.hpp"
#include <algorithm>
#include <cmath>
#include <cstring>

namespace platform::lv2 {
namespace {

// The largest state that is written as a text, in bytes. A larger one takes longer to write than the host
// waits for an effect's process, and does not fit into one of its messages.
constexpr std::size_t LargestState = std::size_t{32} << 20U;

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

// Rewrites the port values in lilv's text with all their digits. Each port's symbol is followed by its value.
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

// Access to a plug-in's controls by symbol, for a call that may outlive the processor.
struct Controls {
    std::shared_ptr<const Plugin> plugin;
    std::shared_ptr<PortBuffers> buffers;

    [[nodiscard]] const Port* named(std::string_view symbol) const {
        const auto found =
            std::ranges::find_if(plugin->ports, [&](const Port& port) { return port.symbol == symbol; });
        return found == plugin->ports.end() || found->kind != PortKind::ControlInput ? nullptr : &*found;
    }
};

// The context of `valueOf`, with storage for the value that it returns.
struct Asked {
    const Controls& controls;
    float value;
};

const void* valueOf(const char* symbol, void* context, std::uint32_t* size, std::uint32_t* type) {
    auto& [controls, value] = *static_cast<Asked*>(context);
    *size = 0;
    *type = 0;
    const Port* port = controls.named(symbol);
    if (port == nullptr) return nullptr;
    value = controls.buffers->controls.value(port->index);
    *size = sizeof value;
    *type = Urids::shared().atomFloat;
    return &value;
}

void setPortValue(const char* symbol, void* context, const void* value, std::uint32_t size,
                  std::uint32_t type) {
    const auto& controls = *static_cast<Controls*>(context);
    const Port* port = controls.named(symbol);
    const auto number = numberOf(value, size, type);
    if (port != nullptr && number) controls.buffers->controls.setValue(port->index, *number);
}

// Returns an owner of `state` that frees it under the mutex of its world, because the state contains nodes of
// the world.
std::shared_ptr<LilvState> owned(LilvState* state, const std::shared_ptr<World>& world) {
    if (state == nullptr) return nullptr;
    return {state, [world](LilvState* ended) {
                const std::scoped_lock lock(world->mutex());
                lilv_state_free(ended);
            }};
}

} // namespace

Result<Processor::CapturedState> Processor::captureState(const Deadline& deadline) {
    const auto captured = std::make_shared<CapturedState>();
    auto save = [captured, controls = Controls{_plugin, _buffers}, world = _world](Instance& instance) {
        StateRecorder recorder(*instance.get(), world->mutex());
        const std::scoped_lock lock(world->mutex());
        Asked asked{controls, 0};
        captured->state = owned(lilv_state_new_from_instance(
                                    world->plugin(), recorder.instance(), UridMap::shared().mapFeature(),
                                    nullptr, nullptr, nullptr, nullptr, valueOf, &asked,
                                    LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE, instance.features().list()),
                                world);
        captured->numbers = recorder.numbers();
        captured->bytes = recorder.bytes();
    };
    if (auto failure =
            _keeper.call(std::move(save), InstanceKeeper::DuringRun::Allowed, deadline, "saving its state")) {
        return *failure;
    }
    return *captured;
}

std::optional<Error> Processor::restore(State state, InstanceKeeper::DuringRun duringRun,
                                        const Deadline& deadline) {
    auto task = [state = std::move(state),
                 controls = Controls{_plugin, _buffers}](Instance& instance) mutable {
        lilv_state_restore(state.get(), instance.get(), setPortValue, &controls, 0,
                           instance.features().listForRestore());
    };
    return _keeper.call(std::move(task), duringRun, deadline, "restoring a state");
}

std::optional<Error> Processor::applyState(State state) {
    using enum InstanceKeeper::DuringRun;
    if (_keeper.isEmpty()) return unusable(*_plugin, "there is no instance of it");
    const Deadline deadline(ControlLimit);
    if (_plugin->restoresWhileRunning) return restore(std::move(state), Allowed, deadline);
    const Gate::Closure closed(_gate);
    if (!closed) return doesNotReturn();
    return restore(std::move(state), Excluded, deadline);
}

std::optional<Error> Processor::loadDefaultState(const Deadline& deadline) {
    State state;
    {
        const std::scoped_lock lock(_world->mutex());
        state = owned(lilv_state_new_from_world(_world->get(), UridMap::shared().mapFeature(),
                                                lilv_plugin_get_uri(_world->plugin())),
                      _world);
    }
    if (!state) return std::nullopt;
    const std::scoped_lock lock(_instanceMutex);
    return restore(std::move(state), InstanceKeeper::DuringRun::Excluded, deadline); // before the first run
}

Result<std::string> Processor::saveState() {
    const std::scoped_lock lock(_instanceMutex);
    CapturedState captured = _kept;
    if (!_keeper.isEmpty()) {
        auto current = captureState(Deadline(ControlLimit));
        if (!current) return current.error();
        captured = std::move(current.value());
    }
    if (captured.bytes > LargestState) {
        return Error("LV2", 2,
                     "The settings of the effect \"" + _plugin->name +
                         "\" cannot be saved: its state is larger than " +
                         std::to_string(LargestState >> 20U) + " MiB.");
    }
    if (!captured.state) return std::string();
    const std::scoped_lock worldLock(_world->mutex());
    char* text =
        lilv_state_to_string(_world->get(), UridMap::shared().mapFeature(), UridMap::shared().unmapFeature(),
                             captured.state.get(), product::StateURI, nullptr);
    std::string kept = text == nullptr ? std::string() : std::string(text);
    lilv_free(text);
    if (!_keeper.isEmpty()) writeAllDigits(kept, _buffers->controls, _plugin->ports);
    return withAllDigits(kept, captured.numbers);
}

std::optional<Error> Processor::restoreState(const std::string& text) {
    State state;
    if (!text.empty()) { // lilv reads past the end of an empty string
        const std::scoped_lock lock(_world->mutex());
        state = owned(lilv_state_new_from_string(_world->get(), UridMap::shared().mapFeature(), text.c_str()),
                      _world);
    }
    const LilvNode* owner = state ? lilv_state_get_plugin_uri(state.get()) : nullptr;
    if (owner == nullptr || _plugin->uri != lilv_node_as_string(owner)) {
        return Error("LV2", 2, "The state does not belong to the effect \"" + _plugin->name + "\".");
    }
    const std::scoped_lock lock(_instanceMutex);
    return applyState(std::move(state));
}

std::optional<Error> Processor::restorePreset(const std::string& uri) {
    State state;
    {
        const std::scoped_lock lock(_world->mutex());
        const Node node = _world->uri(uri.c_str());
        lilv_world_load_resource(_world->get(), node.get());
        state = owned(lilv_state_new_from_world(_world->get(), UridMap::shared().mapFeature(), node.get()),
                      _world);
    }
    if (!state) {
        return Error("LV2", 3,
                     "The preset " + uri + " of the effect \"" + _plugin->name + "\" cannot be read.");
    }
    const std::scoped_lock lock(_instanceMutex);
    return applyState(std::move(state));
}

} // namespace platform::lv2
