// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The messages between the plug-in and its panel. While the panel is visible, it sends a request (an object
// without properties) every half second. The plug-in sends about 30 display frames a second, until it has
// received no request for a second.
#pragma once

#include "Uris.hpp"
#include "effect/dsp/Processor.hpp"

#include <lv2/atom/atom.h>
#include <lv2/urid/urid.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <type_traits>

namespace tonewright::effect {

inline constexpr double DisplayFramesPerSecond = 30.;
inline constexpr double DisplayRequestSeconds = 0.5;
inline constexpr double DisplayLeaseSeconds = 1.;

/// The host's URIDs for the URIs used here.
struct DisplayUrids {
    LV2_URID atomFloat = 0;
    LV2_URID atomObject = 0;
    LV2_URID atomVector = 0;
    LV2_URID eventTransfer = 0;
    LV2_URID displayRequest = 0;
    LV2_URID displayFrame = 0;
    LV2_URID levels = 0;
    LV2_URID spectrum = 0;

    [[nodiscard]] static DisplayUrids mapped(const LV2_URID_Map& map) {
        const auto of = [&map](const char* uri) { return map.map(map.handle, uri); };
        return {
            of(LV2_ATOM__Float),   of(LV2_ATOM__Object), of(LV2_ATOM__Vector), of(LV2_ATOM__eventTransfer),
            of(DisplayRequestUri), of(DisplayFrameUri),  of(LevelsUri),        of(SpectrumUri)};
    }
};

/// The memory layout of an atom property whose value is a vector of Count floats.
template <std::size_t Count>
struct FloatVectorProperty {
    static_assert(Count % 2 == 0, "properties begin on multiples of eight bytes");
    std::uint32_t key = 0;
    std::uint32_t context = 0;
    LV2_Atom value{};
    LV2_Atom_Vector_Body vector{};
    std::array<float, Count> data{};

    void describe(LV2_URID name, const DisplayUrids& urids) noexcept {
        key = name;
        value = {static_cast<std::uint32_t>(sizeof(vector) + sizeof(data)), urids.atomVector};
        vector = {sizeof(float), urids.atomFloat};
    }
    [[nodiscard]] bool is(LV2_URID name, const DisplayUrids& urids) const noexcept {
        return key == name && value.type == urids.atomVector && value.size == sizeof(vector) + sizeof(data) &&
               vector.child_type == urids.atomFloat && vector.child_size == sizeof(float);
    }
};

/// A display frame as an atom object, including its header.
struct DisplayMessage {
    LV2_Atom atom{};
    LV2_Atom_Object_Body object{};
    FloatVectorProperty<8> levels;
    FloatVectorProperty<SpectrumBands> spectrum;

    [[nodiscard]] static DisplayMessage of(const DisplayFrame& frame, const DisplayUrids& urids) noexcept {
        DisplayMessage message;
        message.atom = {static_cast<std::uint32_t>(sizeof(DisplayMessage) - sizeof(LV2_Atom)),
                        urids.atomObject};
        message.object = {0, urids.displayFrame};
        message.levels.describe(urids.levels, urids);
        message.levels.data = {frame.inputPeaks[0],  frame.inputPeaks[1], frame.outputPeaks[0],
                               frame.outputPeaks[1], frame.envelope,      frame.cutoffHertz,
                               frame.rootNote,       frame.onsets};
        message.spectrum.describe(urids.spectrum, urids);
        message.spectrum.data = frame.spectrum;
        return message;
    }

    /// Reads a display frame from an atom, or returns no value if the atom is something else.
    [[nodiscard]] static std::optional<DisplayFrame> read(const void* atom, std::size_t size,
                                                          const DisplayUrids& urids) noexcept {
        DisplayMessage message;
        if (size < sizeof(DisplayMessage)) {
            return std::nullopt;
        }
        std::memcpy(&message, atom, sizeof(DisplayMessage));
        if (message.atom.type != urids.atomObject ||
            message.atom.size != sizeof(DisplayMessage) - sizeof(LV2_Atom) ||
            message.object.otype != urids.displayFrame || !message.levels.is(urids.levels, urids) ||
            !message.spectrum.is(urids.spectrum, urids)) {
            return std::nullopt;
        }
        const auto& level = message.levels.data;
        return DisplayFrame{.inputPeaks = {level[0], level[1]},
                            .outputPeaks = {level[2], level[3]},
                            .envelope = level[4],
                            .cutoffHertz = level[5],
                            .rootNote = level[6],
                            .onsets = level[7],
                            .spectrum = message.spectrum.data};
    }
};

static_assert(std::is_trivially_copyable_v<DisplayMessage>);
static_assert(sizeof(DisplayMessage) == 16 + (24 + 8 * 4) + (24 + SpectrumBands * 4), "no holes");

/// The panel's request as an atom object, including its header.
struct DisplayRequest {
    LV2_Atom atom{};
    LV2_Atom_Object_Body object{};

    [[nodiscard]] static DisplayRequest of(const DisplayUrids& urids) noexcept {
        return {{sizeof(LV2_Atom_Object_Body), urids.atomObject}, {0, urids.displayRequest}};
    }
};

} // namespace tonewright::effect
