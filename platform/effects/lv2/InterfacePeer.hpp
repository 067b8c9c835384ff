// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The two sides of a running interface: what it knows of its effect and its place, and what its host sees of
// it. One thread.
#pragma once

#include "platform/effects/lv2/Plugin.hpp"

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace platform::lv2 {

/// Where an interface is created.
struct InterfacePlace {
    unsigned long window = 0; // ID of the parent X window
    float scale = 1;          // device pixels per logical pixel
    std::function<void(int width, int height)>
        takeSize; // called with a size that the interface requests, in device pixels, from 1 to LongestSide
    static constexpr int LongestSide = 16384;
};

/// The effect as its interface knows it.
class InterfacePeer {
  public:
    InterfacePeer() = default;
    InterfacePeer(const InterfacePeer&) = delete;
    InterfacePeer& operator=(const InterfacePeer&) = delete;
    virtual ~InterfacePeer() = default;

    [[nodiscard]] virtual const Plugin& plugin() const noexcept = 0;
    [[nodiscard]] virtual double sampleRate() const noexcept = 0;
    /// Returns the value of a control port, or sets it; a value beyond its bounds is limited.
    [[nodiscard]] virtual float value(std::uint32_t port) const = 0;
    virtual void setValue(std::uint32_t port, float value) = 0;
    /// As the operations of EffectProcessor with these names.
    virtual void setListening(bool isListening) = 0;
    virtual bool sendAtom(std::uint32_t port, std::span<const std::byte> atom) = 0;
    virtual bool receiveAtom(std::uint32_t& port, std::vector<std::byte>& atom) = 0;
};

/// An interface that runs in this process.
class RunningInterface {
  public:
    RunningInterface() = default;
    RunningInterface(const RunningInterface&) = delete;
    RunningInterface& operator=(const RunningInterface&) = delete;
    virtual ~RunningInterface() = default;

    /// Returns the ID of the X window that the interface returned as its widget, or 0.
    [[nodiscard]] virtual unsigned long namedWindow() const noexcept = 0;
    /// Reports changes to the interface and calls its idle function. To be called about 30 times a second
    /// while the interface is visible.
    virtual void update() = 0;
    /// Returns whether the interface has closed itself.
    [[nodiscard]] virtual bool hasClosed() const noexcept = 0;
};

} // namespace platform::lv2
