// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/InterfaceHost.hpp"

#include "platform/effects/lv2/UridMap.hpp"
#include "platform/effects/lv2/Watchdog.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <dlfcn.h>
#include <limits>

namespace platform::lv2 {
namespace {

constexpr float UpdatesPerSecond = 30;

constexpr const char* MakeResident = "http://lv2plug.in/ns/extensions/ui#makeResident";

// Access to the instance itself is not among them: an interface that needs it could not live apart from it.
constexpr std::string_view Offered[] = {
    LV2_URID__map,     LV2_URID__unmap,      LV2_OPTIONS__options,  LV2_LOG__log,       LV2_UI__parent,
    LV2_UI__resize,    LV2_UI__portMap,      LV2_UI__portSubscribe, LV2_UI__touch,      LV2_UI__idleInterface,
    LV2_UI__fixedSize, LV2_UI__noUserResize, LV2_UI__scaleFactor,   LV2_UI__updateRate, MakeResident};

Error failure(const Interface& interface, const std::string& reason) {
    return {"LV2", 5, "The interface " + interface.uri + " cannot be used: " + reason + "."};
}

} // namespace

std::string lackedInterfaceFeature(const Interface& interface) {
    for (const std::string& feature : interface.requiredFeatures) {
        if (std::find(std::begin(Offered), std::end(Offered), feature) == std::end(Offered)) return feature;
    }
    return {};
}

InterfaceHost::InterfaceHost(std::shared_ptr<AudioUnit> unit, Place place)
    : _unit(std::move(unit))
    , _place(std::move(place))
    , _updateRate(UpdatesPerSecond)
    , _sampleRate(static_cast<float>(_unit->lv2Processor().sampleRate()))
    , _told(_unit->lv2Processor().plugin().ports.size(), std::numeric_limits<float>::quiet_NaN()) {
    listFeatures();
}

void InterfaceHost::listFeatures() {
    _resize = {this, [](LV2UI_Feature_Handle self, int width, int height) {
                   if (width <= 0 || height <= 0) return 1;
                   static_cast<InterfaceHost*>(self)->_place.takeSize(width, height);
                   return 0;
               }};
    _portMap = {this, [](LV2UI_Feature_Handle self, const char* symbol) -> std::uint32_t {
                    for (const Port& port :
                         static_cast<InterfaceHost*>(self)->_unit->lv2Processor().plugin().ports) {
                        if (port.symbol == symbol) return port.index;
                    }
                    return LV2UI_INVALID_PORT_INDEX;
                }};
    // Values and events of all ports are reported anyway; only other protocols are refused.
    const auto subscribe = [](LV2UI_Feature_Handle, std::uint32_t, std::uint32_t protocol,
                              const LV2_Feature* const*) -> std::uint32_t {
        const Urids& urids = Urids::shared();
        return protocol == 0 || protocol == urids.floatProtocol || protocol == urids.atomEventTransfer ? 0
                                                                                                       : 1;
    };
    _subscribe = {this, subscribe, subscribe};
    _touch = {this, [](LV2UI_Feature_Handle, std::uint32_t, bool) {}}; // nothing is recorded, nothing to hold
    const Urids& urids = Urids::shared();
    const auto number = [&](LV2_URID key, const float& value) {
        return LV2_Options_Option{LV2_OPTIONS_INSTANCE, 0, key, sizeof value, urids.atomFloat, &value};
    };
    _options = {number(urids.scaleFactor, _place.scale),
                number(urids.updateRate, _updateRate),
                number(urids.sampleRate, _sampleRate),
                {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    // X11 interfaces take the parent window's number in place of a pointer.
    _features = {{LV2_URID__map, UridMap::shared().mapFeature()},
                 {LV2_URID__unmap, UridMap::shared().unmapFeature()},
                 {LV2_OPTIONS__options, _options.data()},
                 {LV2_LOG__log, logFeature()},
                 // NOLINTNEXTLINE(performance-no-int-to-ptr): as above
                 {LV2_UI__parent, reinterpret_cast<void*>(_place.window)},
                 {LV2_UI__resize, &_resize},
                 {LV2_UI__portMap, &_portMap},
                 {LV2_UI__portSubscribe, &_subscribe},
                 {LV2_UI__touch, &_touch},
                 {LV2_UI__idleInterface, nullptr},
                 {LV2_UI__fixedSize, nullptr},
                 {LV2_UI__noUserResize, nullptr}};
    for (const LV2_Feature& feature : _features) _list.push_back(&feature);
    _list.push_back(nullptr);
}

Result<std::unique_ptr<InterfaceHost>> InterfaceHost::make(std::shared_ptr<AudioUnit> unit,
                                                           const Interface& interface, Place place) {
    std::unique_ptr<InterfaceHost> host(new InterfaceHost(std::move(unit), std::move(place)));
    if (auto error = host->load(interface)) return *error;
    return host;
}

std::optional<Error> InterfaceHost::load(const Interface& interface) {
    // Never unloaded: libraries that interfaces bring along often cannot be.
    void* library = ::dlopen(interface.binaryPath.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (library == nullptr) {
        return failure(interface, "its library cannot be loaded: " + std::string(::dlerror()));
    }
    const auto descriptorAt =
        reinterpret_cast<LV2UI_DescriptorFunction>(::dlsym(library, "lv2ui_descriptor"));
    if (descriptorAt == nullptr) return failure(interface, "its library has no interface");
    for (std::uint32_t i = 0; _descriptor == nullptr; ++i) {
        const LV2UI_Descriptor* candidate = descriptorAt(i);
        if (candidate == nullptr) return failure(interface, "its library does not have it");
        if (interface.uri == candidate->URI) _descriptor = candidate;
    }

    const Processor& processor = _unit->lv2Processor();
    const auto write = [](LV2UI_Controller self, std::uint32_t port, std::uint32_t size,
                          std::uint32_t protocol, const void* data) {
        static_cast<InterfaceHost*>(self)->takeWrite(port, size, protocol, data);
    };
    LV2UI_Widget widget = nullptr;
    {
        const Watchdog watchdog("The interface " + interface.uri);
        _handle = _descriptor->instantiate(
            _descriptor, processor.plugin().uri.c_str(),
            (interface.bundlePath + (interface.bundlePath.ends_with('/') ? "" : "/")).c_str(), write, this,
            &widget, _list.data());
    }
    if (_handle == nullptr) return failure(interface, "it made no instance of itself");
    if (_descriptor->extension_data != nullptr) {
        _idle = static_cast<const LV2UI_Idle_Interface*>(_descriptor->extension_data(LV2_UI__idleInterface));
    }
    _unit->lv2Processor().buffers().events.setListening(true);
    tellValues();
    _namedWindow = reinterpret_cast<unsigned long>(widget);
    return std::nullopt;
}

InterfaceHost::~InterfaceHost() {
    setVisible(false);
    _unit->releaseInterface();
    if (_handle == nullptr) return;
    _unit->lv2Processor().buffers().events.setListening(false);
    _descriptor->cleanup(_handle);
}

void InterfaceHost::takeWrite(std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
                              const void* data) {
    Processor& processor = _unit->lv2Processor();
    const auto& ports = processor.plugin().ports;
    if (port >= ports.size() || data == nullptr) return;
    if (protocol == 0 || protocol == Urids::shared().floatProtocol) {
        float value = 0;
        if (size != sizeof value || ports[port].kind != PortKind::ControlInput) return;
        std::memcpy(&value, data, sizeof value);
        if (!std::isfinite(value)) return;
        _told[port] = value; // it knows the value that it set, and is told if that was out of range
        _unit->setParameterValue(port, value);
    } else if (protocol == Urids::shared().atomEventTransfer) {
        LV2_Atom head{};
        if (size < sizeof head) return;
        std::memcpy(&head, data, sizeof head);
        if (head.size > size - sizeof head) return;
        if (!processor.buffers().events.send(
                port, {static_cast<const std::byte*>(data), sizeof head + head.size})) {
            warn("A message of the interface of \"" + processor.plugin().name +
                 "\" did not fit into the queue and was lost.");
        }
    }
}

void InterfaceHost::tellValues() {
    if (_descriptor->port_event == nullptr) return;
    const Processor& processor = _unit->lv2Processor();
    for (const Port& port : processor.plugin().ports) {
        if (port.kind != PortKind::ControlInput && port.kind != PortKind::ControlOutput) continue;
        const float value = _unit->parameterValue(port.index);
        if (value == _told[port.index] || std::isnan(value)) continue;
        _told[port.index] = value;
        _descriptor->port_event(_handle, port.index, sizeof value, 0, &value);
    }
}

void InterfaceHost::update() {
    tellValues();
    std::uint32_t port = 0;
    // As many as there were at the start: an effect that sends without end must not block the screen.
    for (int i = 0; i < 1000 && _unit->lv2Processor().buffers().events.receive(port, _atom); ++i) {
        if (_descriptor->port_event == nullptr) continue;
        _descriptor->port_event(_handle, port, static_cast<std::uint32_t>(_atom.size()),
                                Urids::shared().atomEventTransfer, _atom.data());
    }
    if (_idle != nullptr && _idle->idle != nullptr && _idle->idle(_handle) != 0) {
        _idle = nullptr; // it has closed
    }
}

} // namespace platform::lv2
