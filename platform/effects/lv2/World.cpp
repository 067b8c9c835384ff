// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/World.hpp"

#include <algorithm>
#include <cmath>
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/midi/midi.h>
#include <lv2/port-props/port-props.h>
#include <lv2/presets/presets.h>
#include <lv2/resize-port/resize-port.h>
#include <lv2/state/state.h>
#include <lv2/ui/ui.h>
#include <lv2/units/units.h>

namespace platform::lv2 {
namespace {

constexpr const char* SideChainProperty = "http://lv2plug.in/ns/lv2core#isSideChain";
constexpr const char* SideChainGroup = "http://lv2plug.in/ns/ext/port-groups#sideChainOf";
constexpr const char* PortGroup = "http://lv2plug.in/ns/ext/port-groups#group";
constexpr const char* RdfsLabel = "http://www.w3.org/2000/01/rdf-schema#label";

std::string textOf(const LilvNode* node) {
    if (node == nullptr) return {};
    const char* text = lilv_node_as_string(node);
    return text == nullptr ? std::string() : std::string(text);
}

std::vector<std::string> textsOf(const LilvNodes* nodes) {
    std::vector<std::string> texts;
    LILV_FOREACH(nodes, i, nodes) texts.push_back(textOf(lilv_nodes_get(nodes, i)));
    std::sort(texts.begin(), texts.end());
    return texts;
}

std::string pathOf(const LilvNode* node) {
    char* path = node == nullptr ? nullptr : lilv_node_get_path(node, nullptr);
    std::string text = path == nullptr ? std::string() : std::string(path);
    lilv_free(path);
    return text;
}

bool isNumber(const LilvNode* node) {
    return node != nullptr && (lilv_node_is_float(node) || lilv_node_is_int(node)) &&
           std::isfinite(lilv_node_as_float(node));
}

// Reads the ports of one plug-in; the nodes it asks with are made once.
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
        // The vocabulary's own units are known by name, not by symbol, unless its file was read too.
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
    // Some plug-ins state their default as a multiple too, others as a plain number. Only the former lies
    // within the bounds as they are stated.
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

World::World(const BundleIndex& index, const std::string& pluginURI)
    : _world(lilv_world_new()) {
    for (const IndexedBundle* bundle : index.bundlesAbout(pluginURI)) {
        const Node location(lilv_new_file_uri(_world.get(), nullptr, (bundle->path + "/").c_str()));
        lilv_world_load_bundle(_world.get(), location.get());
    }
    _plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(_world.get()), uri(pluginURI.c_str()).get());
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

std::vector<Interface> World::interfaces() const {
    std::vector<Interface> found;
    LilvUIs* uis = lilv_plugin_get_uis(_plugin);
    if (uis == nullptr) return found;
    LILV_FOREACH(uis, i, uis) {
        const LilvUI* ui = lilv_uis_get(uis, i);
        if (!lilv_ui_is_a(ui, uri(LV2_UI__X11UI).get())) continue;
        Interface entry;
        entry.uri = textOf(lilv_ui_get_uri(ui));
        entry.bundlePath = pathOf(lilv_ui_get_bundle_uri(ui));
        entry.binaryPath = pathOf(lilv_ui_get_binary_uri(ui));
        const Node subject(lilv_node_duplicate(lilv_ui_get_uri(ui)));
        lilv_world_load_resource(_world.get(), subject.get()); // its details may be in a file of their own
        const auto values = [&](const char* property) {
            return Nodes(lilv_world_find_nodes(_world.get(), subject.get(), uri(property).get(), nullptr));
        };
        entry.requiredFeatures = textsOf(values(LV2_CORE__requiredFeature).get());
        const Nodes optional = values(LV2_CORE__optionalFeature);
        const auto says = [&](const char* feature) {
            const Node node = uri(feature);
            return lilv_nodes_contains(optional.get(), node.get()) ||
                   std::count(entry.requiredFeatures.begin(), entry.requiredFeatures.end(), feature) > 0;
        };
        entry.isResizable = !says(LV2_UI__fixedSize) && !says(LV2_UI__noUserResize);
        const Nodes wanted = values(LV2_UI__portNotification);
        LILV_FOREACH(nodes, j, wanted.get()) {
            const LilvNode* notification = lilv_nodes_get(wanted.get(), j);
            const auto get = [&](const char* property) {
                return Node(lilv_world_get(_world.get(), notification, uri(property).get(), nullptr));
            };
            const Node index = get(LV2_UI__portIndex), symbol = get(LV2_CORE__symbol);
            const LilvPort* port = symbol ? lilv_plugin_get_port_by_symbol(_plugin, symbol.get()) : nullptr;
            if (port == nullptr && !isNumber(index.get())) continue;
            entry.notifications.push_back({port != nullptr
                                               ? lilv_port_get_index(_plugin, port)
                                               : static_cast<std::uint32_t>(lilv_node_as_int(index.get())),
                                           textOf(get(LV2_UI__protocol).get())});
        }
        found.push_back(std::move(entry));
    }
    lilv_uis_free(uis);
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.uri < b.uri; });
    return found;
}

std::vector<Preset> World::presets() const {
    std::vector<Preset> found;
    const Nodes related(lilv_plugin_get_related(_plugin, uri(LV2_PRESETS__Preset).get()));
    LILV_FOREACH(nodes, i, related.get()) {
        const LilvNode* preset = lilv_nodes_get(related.get(), i);
        lilv_world_load_resource(_world.get(), preset);
        const Node label(lilv_world_get(_world.get(), preset, uri(RdfsLabel).get(), nullptr));
        found.push_back({textOf(preset), label ? textOf(label.get()) : textOf(preset)});
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.uri < b.uri; });
    return found;
}

} // namespace platform::lv2
