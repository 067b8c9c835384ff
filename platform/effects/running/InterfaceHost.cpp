// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/InterfaceHost.hpp"

#include "platform/effects/lv2/UridMap.hpp"
#include "platform/effects/running/Features.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <dlfcn.h>
#include <limits>
#include <lv2/atom/atom.h>

namespace platform::lv2 {
namespace {

constexpr float UpdatesPerSecond = 30;

Error failure(const Interface& interface, const std::string& reason) {
    return {"LV2", 5, "The interface " + interface.uri + " cannot be used: " + reason + "."};
}

} // namespace

InterfaceHost::InterfaceHost(InterfacePeer& peer, Interface::Kind kind, InterfacePlace place)
    : _peer(peer)
    , _place(std::move(place))
    , _kind(kind)
    , _updateRate(UpdatesPerSecond)
    , _sampleRate(static_cast<float>(peer.sampleRate()))
    , _told(peer.plugin().ports.size(), std::numeric_limits<float>::quiet_NaN()) {
    listFeatures();
}

void InterfaceHost::listFeatures() {
    _resize = {this, [](LV2UI_Feature_Handle self, int width, int height) {
                   if (width <= 0 || height <= 0) return 1;
                   width = std::min(width, InterfacePlace::LongestSide);
                   height = std::min(height, InterfacePlace::LongestSide);
                   static_cast<InterfaceHost*>(self)->_place.takeSize(width, height);
                   return 0;
               }};
    _portMap = {this, [](LV2UI_Feature_Handle self, const char* symbol) -> std::uint32_t {
                    for (const Port& port : static_cast<InterfaceHost*>(self)->_peer.plugin().ports) {
                        if (port.symbol == symbol) return port.index;
                    }
                    return LV2UI_INVALID_PORT_INDEX;
                }};
    // Values and events of all ports are always reported, so only other protocols are refused.
    const auto subscribe = [](LV2UI_Feature_Handle, std::uint32_t, std::uint32_t protocol,
                              const LV2_Feature* const*) -> std::uint32_t {
        const Urids& urids = Urids::shared();
        return protocol == 0 || protocol == urids.floatProtocol || protocol == urids.atomEventTransfer ? 0
                                                                                                       : 1;
    };
    _subscribe = {this, subscribe, subscribe};
    _touch = {this, [](LV2UI_Feature_Handle, std::uint32_t, bool) {}}; // there is no automation to record
    listOptions();
    _features = {{LV2_URID__map, UridMap::shared().mapFeature()},
                 {LV2_URID__unmap, UridMap::shared().unmapFeature()},
                 {LV2_OPTIONS__options, _options.data()},
                 {LV2_LOG__log, logFeature()},
                 {LV2_UI__resize, &_resize},
                 {LV2_UI__portMap, &_portMap},
                 {LV2_UI__portSubscribe, &_subscribe},
                 {LV2_UI__touch, &_touch},
                 {LV2_UI__idleInterface, nullptr},
                 {LV2_UI__fixedSize, nullptr},
                 {LV2_UI__noUserResize, nullptr}};
    addFeaturesOf(_kind);
    for (const LV2_Feature& feature : _features) _list.push_back(&feature);
    _list.push_back(nullptr);
}

void InterfaceHost::addFeaturesOf(Interface::Kind kind) {
    if (kind == Interface::Kind::X11) {
        // The ID of the parent window is in place of a pointer. Interfaces of other toolkits expect a pointer
        // to a widget here, and need none.
        // NOLINTNEXTLINE(performance-no-int-to-ptr): as above
        _features.push_back({LV2_UI__parent, reinterpret_cast<void*>(_place.window)});
    }
    if (kind == Interface::Kind::External) {
        _externalHost = {[](LV2UI_Controller self) { static_cast<InterfaceHost*>(self)->_hasClosed = true; },
                         _peer.plugin().name.c_str()};
        _features.push_back({external::HostFeature, &_externalHost});
        _features.push_back({external::OldName, &_externalHost});
        _features.push_back({external::Class, nullptr});
    }
}

void InterfaceHost::listOptions() {
    const Urids& urids = Urids::shared();
    const auto number = [&](LV2_URID key, const float& value) {
        return LV2_Options_Option{LV2_OPTIONS_INSTANCE, 0, key, sizeof value, urids.atomFloat, &value};
    };
    _options = {number(urids.scaleFactor, _place.scale),
                number(urids.updateRate, _updateRate),
                number(urids.sampleRate, _sampleRate),
                {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
}

Result<std::unique_ptr<InterfaceHost>> InterfaceHost::make(InterfacePeer& peer, const Interface& interface,
                                                           InterfacePlace place) {
    std::unique_ptr<InterfaceHost> host(new InterfaceHost(peer, interface.kind, std::move(place)));
    if (auto error = host->load(interface)) return *error;
    return host;
}

std::optional<Error> InterfaceHost::load(const Interface& interface) {
    // Never unloaded, because many libraries that interfaces depend on do not support that.
    void* library = ::dlopen(interface.binaryPath.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (library == nullptr) {
        return failure(interface, "its library cannot be loaded: " + std::string(::dlerror()));
    }
    const auto descriptorAt =
        reinterpret_cast<LV2UI_DescriptorFunction>(::dlsym(library, "lv2ui_descriptor"));
    if (descriptorAt == nullptr) return failure(interface, "its library has no interface");
    for (std::uint32_t i = 0; _descriptor == nullptr; ++i) {
        const LV2UI_Descriptor* candidate = descriptorAt(i);
        if (candidate == nullptr) return failure(interface, "its library does not contain it");
        if (interface.uri == candidate->URI) _descriptor = candidate;
    }

    const auto write = [](LV2UI_Controller self, std::uint32_t port, std::uint32_t size,
                          std::uint32_t protocol, const void* data) {
        static_cast<InterfaceHost*>(self)->takeWrite(port, size, protocol, data);
    };
    _handle = _descriptor->instantiate(
        _descriptor, _peer.plugin().uri.c_str(),
        (interface.bundlePath + (interface.bundlePath.ends_with('/') ? "" : "/")).c_str(), write, this,
        &_widget, _list.data());
    if (_handle == nullptr) return failure(interface, "it did not create an instance");
    if (_kind == Interface::Kind::External) {
        if (_widget == nullptr) return failure(interface, "it has no window");
        _external = static_cast<external::Widget*>(_widget);
    }
    if (_descriptor->extension_data != nullptr) {
        _idle = static_cast<const LV2UI_Idle_Interface*>(_descriptor->extension_data(LV2_UI__idleInterface));
    }
    _peer.setListening(true);
    tellValues();
    return std::nullopt;
}

InterfaceHost::~InterfaceHost() {
    if (_handle == nullptr) return;
    _peer.setListening(false);
    _descriptor->cleanup(_handle);
}

void InterfaceHost::show() {
    if (_external != nullptr && !_hasClosed) _external->show(_external);
}

void InterfaceHost::takeWrite(std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
                              const void* data) {
    const auto& ports = _peer.plugin().ports;
    if (port >= ports.size() || data == nullptr) return;
    if (protocol == 0 || protocol == Urids::shared().floatProtocol) {
        float value = 0;
        if (size != sizeof value || ports[port].kind != PortKind::ControlInput) return;
        std::memcpy(&value, data, sizeof value);
        if (!std::isfinite(value)) return;
        _told[port] = value; // not reported back, unless it is clamped
        _peer.setValue(port, value);
    } else if (protocol == Urids::shared().atomEventTransfer) {
        LV2_Atom head{};
        if (size < sizeof head) return;
        std::memcpy(&head, data, sizeof head);
        if (head.size > size - sizeof head) return;
        if (!_peer.sendAtom(port, {static_cast<const std::byte*>(data), sizeof head + head.size})) {
            warn("A message of the interface of \"" + _peer.plugin().name +
                 "\" did not fit into the queue and was lost.");
        }
    }
}

void InterfaceHost::tellValues() {
    if (_descriptor->port_event == nullptr) return;
    for (const Port& port : _peer.plugin().ports) {
        if (port.kind != PortKind::ControlInput && port.kind != PortKind::ControlOutput) continue;
        const float value = _peer.value(port.index);
        if (value == _told[port.index] || std::isnan(value)) continue;
        _told[port.index] = value;
        _descriptor->port_event(_handle, port.index, sizeof value, 0, &value);
    }
}

void InterfaceHost::update() {
    std::uint32_t port = 0;
    // At most 1000 events per call, so that an effect that sends events continuously does not block the
    // thread.
    for (int i = 0; i < 1000 && _peer.receiveAtom(port, _atom); ++i) {
        if (_descriptor->port_event == nullptr) continue;
        _descriptor->port_event(_handle, port, static_cast<std::uint32_t>(_atom.size()),
                                Urids::shared().atomEventTransfer, _atom.data());
    }
    tellValues(); // which may have come with the events
    if (!_hasClosed && _external != nullptr) _external->run(_external);
    if (!_hasClosed && _idle != nullptr && _idle->idle != nullptr) _hasClosed = _idle->idle(_handle) != 0;
}

} // namespace platform::lv2
