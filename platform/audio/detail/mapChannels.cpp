// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/mapChannels.hpp"

#include <algorithm>

namespace platform {
namespace {

constexpr float MinusThreeDecibels = 0.70710678F;

void addScaled(const float* input, float scale, float* output, std::uint32_t frames) noexcept {
    for (std::uint32_t i = 0; i < frames; ++i) output[i] += scale * input[i];
}

// The usual channel order: left, right, centre, low frequencies, rear left, rear right.
void foldDownToPair(ConstPlanarSound inputs, PlanarSound outputs) noexcept {
    const std::uint32_t inputChannels = inputs.channels();
    const std::uint32_t frames = outputs.frames();
    for (std::uint32_t side = 0; side < 2; ++side) {
        std::copy_n(inputs[side], frames, outputs[side]);
        if (inputChannels == 3 || inputChannels >= 5) {
            addScaled(inputs[2], MinusThreeDecibels, outputs[side], frames);
        }
        const std::uint32_t rear = (inputChannels == 4 ? 2U : inputChannels == 5 ? 3U : 4U) + side;
        if (inputChannels >= 4) addScaled(inputs[rear], MinusThreeDecibels, outputs[side], frames);
    }
}

} // namespace

void mapChannels(ConstPlanarSound inputs, PlanarSound outputs) noexcept {
    const std::uint32_t inputChannels = inputs.channels();
    const std::uint32_t outputChannels = outputs.channels();
    const std::uint32_t frames = outputs.frames();
    if (inputChannels == 1 && outputChannels >= 2) {
        std::copy_n(inputs[0], frames, outputs[0]);
        std::copy_n(inputs[0], frames, outputs[1]);
        for (std::uint32_t c = 2; c < outputChannels; ++c) std::fill_n(outputs[c], frames, 0.0F);
    } else if (inputChannels >= 2 && outputChannels == 1) {
        std::fill_n(outputs[0], frames, 0.0F);
        const float share = 1.0F / static_cast<float>(inputChannels);
        for (std::uint32_t c = 0; c < inputChannels; ++c) addScaled(inputs[c], share, outputs[0], frames);
    } else if (inputChannels > 2 && outputChannels == 2) {
        foldDownToPair(inputs, outputs);
    } else {
        const std::uint32_t common = std::min(inputChannels, outputChannels);
        for (std::uint32_t c = 0; c < common; ++c) std::copy_n(inputs[c], frames, outputs[c]);
        for (std::uint32_t c = common; c < outputChannels; ++c) std::fill_n(outputs[c], frames, 0.0F);
    }
}

} // namespace platform
