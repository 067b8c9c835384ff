// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs a plug-in's interface of any toolkit: loads it, reports values and events to it, and receives what it
// sends, in the program or in a process of its own. The interface communicates with the plug-in only through
// its peer, and with the view around it only through two window IDs and the size that it requests. One
// thread.
#pragma once

#include "platform/effects/lv2/InterfacePeer.hpp"
#include "platform/effects/lv2/externalInterface.hpp"
#include "platform/foundation/Result.hpp"

#include <lv2/options/options.h>
#include <lv2/ui/ui.h>
#include <memory>
#include <optional>
#include <vector>

namespace platform::lv2 {

class InterfaceHost final : public RunningInterface {
  public:
    /// Loads and creates the interface, or returns the reason why that failed. The peer outlives it.
    [[nodiscard]] static Result<std::unique_ptr<InterfaceHost>>
    make(InterfacePeer& peer, const Interface& interface, InterfacePlace place);
    ~InterfaceHost() override;

    /// Returns what the interface returned as its widget: an X11 one the ID of its window or 0, another one
    /// a pointer to an object of its toolkit or null.
    [[nodiscard]] LV2UI_Widget widget() const noexcept { return _widget; }
    [[nodiscard]] unsigned long namedWindow() const noexcept override {
        return reinterpret_cast<unsigned long>(_widget);
    }
    /// Shows the window of an external interface, or raises it.
    void show();
    void update() override;
    [[nodiscard]] bool hasClosed() const noexcept override { return _hasClosed; }

  private:
    InterfaceHost(InterfacePeer& peer, Interface::Kind kind, InterfacePlace place);
    std::optional<Error> load(const Interface& interface);
    void listFeatures();
    void listOptions();
    void addFeaturesOf(Interface::Kind kind);
    void takeWrite(std::uint32_t port, std::uint32_t size, std::uint32_t protocol, const void* data);
    void tellValues();

    InterfacePeer& _peer;
    const InterfacePlace _place;
    bool _hasClosed = false;
    const Interface::Kind _kind;
    LV2UI_Widget _widget = nullptr;
    external::Widget* _external = nullptr; // the widget of an external interface
    // The data that the features point to.
    float _updateRate, _sampleRate;
    LV2UI_Resize _resize{};
    LV2UI_Port_Map _portMap{};
    LV2UI_Port_Subscribe _subscribe{};
    LV2UI_Touch _touch{};
    external::Host _externalHost{};
    std::vector<LV2_Options_Option> _options;
    std::vector<LV2_Feature> _features;
    std::vector<const LV2_Feature*> _list;

    const LV2UI_Descriptor* _descriptor = nullptr;
    LV2UI_Handle _handle = nullptr;
    const LV2UI_Idle_Interface* _idle = nullptr;
    std::vector<float> _told; // by port index: the last value reported to the interface, NaN if none
    std::vector<std::byte> _atom;
};

} // namespace platform::lv2
