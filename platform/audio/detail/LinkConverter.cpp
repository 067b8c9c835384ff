// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/LinkConverter.hpp"

#include <algorithm>

namespace platform {

LinkConverter::LinkConverter(double outputRate, double linkRate, std::uint32_t channels)
    : _path(RatePath::ratesOf(outputRate, linkRate, outputRate), channels) {
    // The filters look ahead. With this much silence before the first frame, they never need frames that have
    // not arrived yet.
    const std::uint32_t lead = _path.inputFor(1);
    _waiting.configure(channels, 2 * (lead + MaximumFrames));
    _waiting.commit(lead);
}

void LinkConverter::process(ConstPlanarSound inputs, PlanarSound outputs) noexcept {
    for (std::uint32_t done = 0; done < outputs.frames();) {
        const PlanarSound space = _waiting.space();
        const std::uint32_t count = std::min(outputs.frames() - done, space.frames());
        for (std::uint32_t c = 0; c < _waiting.channels(); ++c) {
            std::copy_n(inputs[c] + done, count, space[c]);
        }
        _waiting.commit(count);
        done += count;
    }
    _path.process(outputs, [this](PlanarSound sound) { fillWithSilence(sound.after(_waiting.read(sound))); });
}

} // namespace platform
