// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reads the description of a plug-in: its ports and its required features, and derives its component type.
#include "platform/effects/lv2/World.hpp"
#include "platform/effects/lv2/lilvNodes.hpp"

#include <algorithm>
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/midi/midi.h>
#include <lv2/port-props/port-props.h>
#include <lv2/resize-port/resize-port.h>
#include <lv2/state/state.h>
#include <lv2/units/units.h>

namespace platform::lv2 {
namespace {

constexpr const char* SideChainProperty = "http://lv2plug.in/ns/lv2core#isSideChain";
constexpr const char* SideChainGroup = "http://lv2plug.in/ns/ext/port-groups#sideChainOf";
constexpr const char* PortGroup = "http://lv2plug.in/ns/ext/port-groups#group";

// Reads the ports of a plug-in.
class PortReader {
  public:
    explicit PortReader(const World& world)
        : _world(world)
        , _plugin(world.plugin()) {}

    [[nodiscard]] Port read(std::uint32_t index) const {
        const LilvPort* source = lilv_plugin_get_port_by_index(_plugin, index);
        Port port;
        port.index = index;
        port.symbol = textOf(lilv_port_get_symbol(_plugin, source));
        const Node name(lilv_port_get_name(_plugin, source));
        port.name = name ? textOf(name.get()) : port.symbol;
        port.kind = kindOf(source);
        port.isOptional = has(source, LV2_CORE__connectionOptional);
        switch (port.kind) {
        case PortKind::AudioInput:
            port.isSideChain = isSideChain(source);
            break;
        case PortKind::ControlInput:
            readParameter(port, source);
            break;
        case PortKind::ControlOutput:
            readParameter(port, source);
            port.reportsLatency =
                has(source, LV2_CORE__reportsLatency) || designation(source) == LV2_CORE__latency;
            break;
        case PortKind::AtomInput:
        case PortKind::AtomOutput:
            port.supportsMidi =
                lilv_port_supports_event(_plugin, source, _world.uri(LV2_MIDI__MidiEvent).get());
            port.isControl = designation(source) == LV2_CORE__control;
            if (const Node size = get(source, LV2_RESIZE_PORT__minimumSize); isNumber(size.get())) {
                port.minimumSize = static_cast<std::uint32_t>(std::max(0, lilv_node_as_int(size.get())));
            }
            break;
        default:
            break;
        }
        return port;
    }

  private:
    [[nodiscard]] bool isA(const LilvPort* port, const char* type) const {
        return lilv_port_is_a(_plugin, port, _world.uri(type).get());
    }
    [[nodiscard]] bool has(const LilvPort* port, const char* property) const {
        return lilv_port_has_property(_plugin, port, _world.uri(property).get());
    }
    [[nodiscard]] Node get(const LilvPort* port, const char* predicate) const {
        return Node(lilv_port_get(_plugin, port, _world.uri(predicate).get()));
    }
    [[nodiscard]] std::string designation(const LilvPort* port) const {
        return textOf(get(port, LV2_CORE__designation).get());
    }

    [[nodiscard]] PortKind kindOf(const LilvPort* port) const {
        const bool isInput = isA(port, LV2_CORE__InputPort);
        if (!isInput && !isA(port, LV2_CORE__OutputPort)) return PortKind::Unknown;
        if (isA(port, LV2_CORE__AudioPort)) return isInput ? PortKind::AudioInput : PortKind::AudioOutput;
        if (isA(port, LV2_CORE__ControlPort)) {
            return isInput ? PortKind::ControlInput : PortKind::ControlOutput;
        }
        if (isA(port, LV2_CORE__CVPort)) return isInput ? PortKind::CvInput : PortKind::CvOutput;
        if (isA(port, LV2_ATOM__AtomPort)) return isInput ? PortKind::AtomInput : PortKind::AtomOutput;
        return PortKind::Unknown;
    }

    [[nodiscard]] bool isSideChain(const LilvPort* port) const {
        if (has(port, SideChainProperty)) return true;
        const Node group = get(port, PortGroup);
        return group && lilv_world_ask(_world.get(), group.get(), _world.uri(SideChainGroup).get(), nullptr);
    }

    [[nodiscard]] std::string unitOf(const LilvPort* port) const {
        const Node unit = get(port, LV2_UNITS__unit);
        if (!unit) return {};
        const Node symbol(
            lilv_world_get(_world.get(), unit.get(), _world.uri(LV2_UNITS__symbol).get(), nullptr));
        if (symbol) return textOf(symbol.get());
        // The symbols of LV2's standard units are only in the vocabulary's own file, which is not loaded.
        const std::string uri = textOf(unit.get());
        const std::string name = uri.substr(uri.find_last_of("#/") + 1);
        static constexpr std::pair<const char*, const char*> Symbols[] = {
            {"db", "dB"},   {"hz", "Hz"},      {"khz", "kHz"}, {"mhz", "MHz"},    {"ms", "ms"},
            {"s", "s"},     {"min", "min"},    {"pc", "%"},    {"cent", "ct"},    {"semitone12TET", "semi"},
            {"oct", "oct"}, {"degree", "deg"}, {"bpm", "BPM"}, {"beat", "beats"}, {"bar", "bars"},
            {"m", "m"},     {"cm", "cm"}};
        for (const auto& [key, text] : Symbols) {
            if (name == key) return text;
        }
        return {};
    }

    void readParameter(Port& port, const LilvPort* source) const {
        AUParameter& parameter = port.parameter;
        parameter.address = port.index;
        parameter.identifier = port.symbol;
        parameter.displayName = port.name;
        parameter.unitName = unitOf(source);
        parameter.isWritable = port.kind == PortKind::ControlInput;
        parameter.isToggle = has(source, LV2_CORE__toggled);
        parameter.isInteger = has(source, LV2_CORE__integer);
        parameter.isEnumeration = has(source, LV2_CORE__enumeration);
        parameter.isLogarithmic = has(source, LV2_PORT_PROPS__logarithmic);
        parameter.isHidden = has(source, LV2_PORT_PROPS__notOnGUI);

        LilvNode *standard = nullptr, *least = nullptr, *most = nullptr;
        lilv_port_get_range(_plugin, source, &standard, &least, &most);
        const Node ownStandard(standard), ownLeast(least), ownMost(most);
        port.followsRate = has(source, LV2_CORE__sampleRate);
        port.isBounded = isNumber(least) && isNumber(most);
        if (isNumber(least)) parameter.minValue = lilv_node_as_float(least);
        if (isNumber(most)) parameter.maxValue = lilv_node_as_float(most);
        if (parameter.maxValue < parameter.minValue) parameter.maxValue = parameter.minValue;
        parameter.defaultValue = isNumber(standard) ? lilv_node_as_float(standard) : parameter.minValue;
        readValueNames(parameter, source);
    }

    void readValueNames(AUParameter& parameter, const LilvPort* source) const {
        LilvScalePoints* points = lilv_port_get_scale_points(_plugin, source);
        if (points == nullptr) return;
        LILV_FOREACH(scale_points, i, points) {
            const LilvScalePoint* point = lilv_scale_points_get(points, i);
            if (isNumber(lilv_scale_point_get_value(point))) {
                parameter.valueStrings.push_back({lilv_node_as_float(lilv_scale_point_get_value(point)),
                                                  textOf(lilv_scale_point_get_label(point))});
            }
        }
        lilv_scale_points_free(points);
        std::sort(parameter.valueStrings.begin(), parameter.valueStrings.end(),
                  [](const auto& a, const auto& b) { return a.value < b.value; });
    }

    const World& _world;
    const LilvPlugin* _plugin;
};

} // namespace

AUParameter parameterAt(const Port& port, double sampleRate) {
    AUParameter parameter = port.parameter;
    if (!port.followsRate) return parameter;
    const auto rate = static_cast<float>(sampleRate);
    // Some plug-ins state the default as a multiple of the sample rate too, others as an absolute value. Only
    // a multiple lies within the stated bounds.
    const float stated = parameter.defaultValue;
    const bool isMultiple = stated >= parameter.minValue && stated <= parameter.maxValue;
    parameter.minValue *= rate;
    parameter.maxValue *= rate;
    parameter.defaultValue =
        std::clamp(isMultiple ? stated * rate : stated, parameter.minValue, parameter.maxValue);
    return parameter;
}

std::uint32_t componentTypeOf(const Plugin& plugin) noexcept {
    bool hasAudio = false, hasMidi = false;
    for (const Port& port : plugin.ports) {
        hasAudio = hasAudio || port.kind == PortKind::AudioInput;
        hasMidi = hasMidi || (port.kind == PortKind::AtomInput && port.supportsMidi);
    }
    if (hasAudio) return hasMidi ? fourCharCode("aumf") : fourCharCode("aufx");
    return hasMidi ? fourCharCode("aumu") : fourCharCode("augn");
}

Plugin World::describe() const {
    Plugin plugin;
    plugin.uri = textOf(lilv_plugin_get_uri(_plugin));
    const Node name(lilv_plugin_get_name(_plugin));
    plugin.name = name ? textOf(name.get()) : plugin.uri;
    plugin.libraryPath = pathOf(lilv_plugin_get_library_uri(_plugin));
    plugin.bundlePath = pathOf(lilv_plugin_get_bundle_uri(_plugin));
    if (!plugin.bundlePath.ends_with('/')) plugin.bundlePath += '/';
    const auto number = [&](const char* property) {
        const Nodes values(lilv_plugin_get_value(_plugin, uri(property).get()));
        const LilvNode* value = values ? lilv_nodes_get_first(values.get()) : nullptr;
        return isNumber(value) ? std::to_string(lilv_node_as_int(value)) : std::string();
    };
    const std::string minor = number(LV2_CORE__minorVersion), micro = number(LV2_CORE__microVersion);
    if (!minor.empty()) plugin.version = minor + "." + (micro.empty() ? "0" : micro);
    const Nodes required(lilv_plugin_get_required_features(_plugin));
    plugin.requiredFeatures = textsOf(required.get());
    plugin.restoresWhileRunning = lilv_plugin_has_feature(_plugin, uri(LV2_STATE__threadSafeRestore).get());
    plugin.wantsDefaultState = lilv_plugin_has_feature(_plugin, uri(LV2_STATE__loadDefaultState).get());
    const PortReader reader(*this);
    const std::uint32_t count = lilv_plugin_get_num_ports(_plugin);
    for (std::uint32_t i = 0; i < count; ++i) plugin.ports.push_back(reader.read(i));
    return plugin;
}

} // namespace platform::lv2
