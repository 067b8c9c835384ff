// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A small LV2 host for tests: loads the built bundle's libraries as any host would, by dlopen.
#pragma once

#include "effect/dsp/Parameters.hpp"
#include "effect/lv2/Ports.hpp"

#include <X11/Xlib.h>
#include <lv2/core/lv2.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace tonewright::effect::test {

/// Numbers URIs, as hosts do.
class UridTable {
  public:
    UridTable();
    [[nodiscard]] LV2_URID operator()(const std::string& uri);
    [[nodiscard]] const LV2_Feature* feature() const { return &feature_; }

  private:
    std::map<std::string, LV2_URID> numbers_;
    LV2_URID_Map map_;
    LV2_Feature feature_;
};

/// One MIDI or other event, in or out.
struct TimedEvent {
    std::int64_t frame = 0;
    LV2_URID type = 0;
    std::vector<std::uint8_t> body;
};

/// An instance of the built plug-in with buffers for everything.
class PluginHost {
  public:
    explicit PluginHost(UridTable& urids, double sampleRate = 48000., bool withUrids = true);
    ~PluginHost();
    PluginHost(const PluginHost&) = delete;
    PluginHost& operator=(const PluginHost&) = delete;

    void set(Parameter parameter, float value) { controls_[index(parameter)] = value; }
    [[nodiscard]] float latency() const { return latency_; }

    /// Runs one block; `midi` is sent in it. Events sent by the plug-in are in `events()`.
    void run(const float* left, const float* right, float* outLeft, float* outRight, std::uint32_t frames,
             std::span<const TimedEvent> events = {});

    [[nodiscard]] const std::vector<TimedEvent>& events() const { return sent_; }
    /// Returns the last events as whole atoms, as hosts hand them to user interfaces.
    [[nodiscard]] std::vector<std::vector<std::uint8_t>> atoms() const;

    void setNotifyCapacity(std::uint32_t bytes) { notifyCapacity_ = bytes; }
    [[nodiscard]] LV2_Handle handle() const { return handle_; }
    [[nodiscard]] const LV2_Descriptor& descriptor() const { return *descriptor_; }
    void activate() { descriptor_->activate(handle_); }

  private:
    void collect();
    /// The capacity itself stands in the first word.
    [[nodiscard]] std::size_t firstWordBeyond() const {
        return std::max<std::size_t>(1, (notifyCapacity_ + 7) / 8);
    }

    UridTable& urids_;
    void* library_ = nullptr;
    const LV2_Descriptor* descriptor_ = nullptr;
    LV2_Handle handle_ = nullptr;
    std::array<float, ParameterCount> controls_{};
    float latency_ = -1.F;
    std::vector<std::uint64_t> controlBuffer_;
    std::vector<std::uint64_t> notifyBuffer_;
    std::uint32_t notifyCapacity_;
    std::vector<TimedEvent> sent_;
};

/// The built panel inside a window of ours.
class PanelHost {
  public:
    struct Options {
        bool withUrids = true;
        bool withParent = true;
        bool withResize = true;
        bool parentMapped = true;
        float scaleFactor = 0.F; ///< 0: not said
    };
    struct Write {
        std::uint32_t port;
        std::uint32_t format;
        std::vector<std::uint8_t> data;
        [[nodiscard]] float value() const;
    };

    PanelHost(UridTable& urids, Options options);
    ~PanelHost();
    PanelHost(const PanelHost&) = delete;
    PanelHost& operator=(const PanelHost&) = delete;

    [[nodiscard]] Window window() const { return reinterpret_cast<Window>(widget_); }
    [[nodiscard]] Window parent() const { return parent_; }
    [[nodiscard]] Display* display() const { return display_; }

    /// Calls the panel's idle; its answer.
    int idle();
    /// Calls idle about thirty times a second for so long.
    void idleFor(double seconds);
    void send(Parameter parameter, float value);
    void sendAtom(std::span<const std::uint8_t> atom);

    /// `type` is ButtonPress or ButtonRelease.
    void button(int type, int x, int y, unsigned button = Button1, unsigned state = 0);
    void move(int x, int y, unsigned state = 0);
    void key(KeySym symbol, unsigned state = 0);

    /// Returns the window's pixels, 0xRRGGBB, row by row.
    [[nodiscard]] std::vector<std::uint32_t> picture() const;

    std::vector<Write> writes;
    int askedWidth = 0;
    int askedHeight = 0;

  private:
    XEvent inputEvent(int type) const;
    void deliver(XEvent& event, long mask);

    UridTable& urids_;
    Display* display_ = nullptr;
    Window parent_ = 0;
    void* library_ = nullptr;
    const LV2UI_Descriptor* descriptor_ = nullptr;
    LV2UI_Handle handle_ = nullptr;
    LV2UI_Widget widget_ = nullptr;
    const LV2UI_Idle_Interface* idle_ = nullptr;
    unsigned long time_ = 1000;
};

/// Returns a path inside the built bundle.
[[nodiscard]] std::string bundlePath(const std::string& file);

} // namespace tonewright::effect::test
