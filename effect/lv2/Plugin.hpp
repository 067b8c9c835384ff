// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The effect as an LV2 plug-in: its ports, messages and state. `run` is called on the audio thread and
// neither allocates nor waits; LV2 specifies on which threads the other operations are called.
#pragma once

#include "DisplayMessage.hpp"
#include "Ports.hpp"
#include "effect/dsp/Processor.hpp"

#include <lv2/atom/atom.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <span>

namespace tonewright::effect {

/// An instance of the plug-in. Without the host's URID map it still processes sound, but neither receives nor
/// sends messages.
class Plugin {
  public:
    Plugin(double sampleRate, const LV2_URID_Map* map);

    void connect(std::uint32_t port, void* data) noexcept;
    void activate() noexcept;
    void run(std::uint32_t frames) noexcept;

    LV2_State_Status save(LV2_State_Store_Function store, LV2_State_Handle handle) const noexcept;
    LV2_State_Status restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle) noexcept;

  private:
    struct Urids {
        LV2_URID atomFloat = 0;
        LV2_URID atomInt = 0;
        LV2_URID atomObject = 0;
        LV2_URID atomSequence = 0;
        LV2_URID atomVector = 0;
        LV2_URID midiEvent = 0;
        LV2_URID tuning = 0;
        LV2_URID modWheel = 0;
        DisplayUrids display;
    };

    void readParameters() noexcept;
    void processBlock(std::uint32_t frames) noexcept;
    void handleEvent(LV2_URID type, std::span<const std::uint8_t> body) noexcept;
    void sendDisplay(std::uint32_t frames, class AtomSequenceWriter& writer) noexcept;
    void publishSnapshot() noexcept;

    double _sampleRate;
    bool _hasUrids;
    Urids _urids;
    Processor _processor;
    MidiOutbox _outbox;

    std::array<const float*, 2> _inputs{};
    std::array<float*, 2> _outputs{};
    const LV2_Atom_Sequence* _control = nullptr;
    LV2_Atom_Sequence* _notify = nullptr;
    float* _latency = nullptr;
    std::array<const float*, ParameterCount> _controls{};
    ParameterValues _values;

    std::int64_t _displayLeaseFrames = 0;
    std::int64_t _framesSinceDisplay = 0;

    // The only member shared between threads: the performance to be saved, packed into one word. `run` writes
    // it; `save` reads it and may be called concurrently.
    std::atomic<std::uint64_t> _savedPerformance;
};

} // namespace tonewright::effect
