// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs a plug-in's X11 interface: loads it, keeps it informed, and receives what it sends. It shares nothing
// with the plug-in except what goes through the processor's rings and values, and nothing with the panel
// around it except the numbers of two windows and the size that it requests. Main thread only.
#pragma once

#include "platform/effects/lv2/AudioUnit.hpp"

#include <functional>
#include <lv2/ui/ui.h>
#include <memory>
#include <vector>

namespace platform::lv2 {

/// Returns the first feature that the interface requires and the host lacks; empty if it has all.
[[nodiscard]] std::string lackedInterfaceFeature(const Interface& interface);

class InterfaceHost {
  public:
    /// What an interface is told about the place in which it is created.
    struct Place {
        unsigned long window = 0;                            // the number of the X window around it
        float scale = 1;                                     // device pixels per point
        std::function<void(int width, int height)> takeSize; // called when it requests one, in device pixels
    };

    /// Loads the interface and creates it, or returns the reason why not. The unit's place for an interface
    /// must have been claimed; it is released with the object.
    [[nodiscard]] static Result<std::unique_ptr<InterfaceHost>> make(std::shared_ptr<AudioUnit> unit,
                                                                     const Interface& interface, Place place);
    ~InterfaceHost();
    InterfaceHost(const InterfaceHost&) = delete;
    InterfaceHost& operator=(const InterfaceHost&) = delete;

    /// Returns the number of the window that the interface named as its own; 0 if it named none.
    [[nodiscard]] unsigned long namedWindow() const noexcept { return _namedWindow; }
    /// Runs the effect while its interface is on the screen, on silence while the engine does not run it.
    void setVisible(bool isVisible) { _unit->runOnSilence(isVisible); }
    /// Tells the interface what changed and lets it do its work; call some thirty times a second while it is
    /// visible.
    void update();

  private:
    InterfaceHost(std::shared_ptr<AudioUnit> unit, Place place);
    std::optional<Error> load(const Interface& interface);
    void listFeatures();
    void takeWrite(std::uint32_t port, std::uint32_t size, std::uint32_t protocol, const void* data);
    void tellValues();

    const std::shared_ptr<AudioUnit> _unit;
    const Place _place;
    unsigned long _namedWindow = 0;
    // What the features point to.
    float _updateRate, _sampleRate;
    LV2UI_Resize _resize{};
    LV2UI_Port_Map _portMap{};
    LV2UI_Port_Subscribe _subscribe{};
    LV2UI_Touch _touch{};
    std::vector<LV2_Options_Option> _options;
    std::vector<LV2_Feature> _features;
    std::vector<const LV2_Feature*> _list;

    const LV2UI_Descriptor* _descriptor = nullptr;
    LV2UI_Handle _handle = nullptr;
    const LV2UI_Idle_Interface* _idle = nullptr;
    std::vector<float> _told; // by port: the value the interface knows; NaN if it knows none
    std::vector<std::byte> _atom;
};

} // namespace platform::lv2
