// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/PlayerVoice.hpp"

#include "platform/audio/detail/mapChannels.hpp"

namespace platform {

void PlayerVoice::readRing(PlanarSound sound) noexcept {
    path->process(sound, [this](PlanarSound wanted) {
        const std::uint32_t count = ring.read(wanted);
        if (count == wanted.frames()) return;
        fillWithSilence(wanted.after(count));
        if (passUnderWay.load(std::memory_order_relaxed)) underruns.fetch_add(1, std::memory_order_relaxed);
    });
}

void PlayerVoice::render(PlanarSound sound, std::uint32_t linkChannels) noexcept {
    bool isLow = false;
    if (!playing.load(std::memory_order_relaxed)) {
        fillWithSilence(sound);
    } else if (const Gate::Passage inside = gate.enter()) {
        const bool narrows = linkChannels > 0 && linkChannels < ring.channels();
        if (ring.channels() == sound.channels() && !narrows) {
            readRing(sound);
        } else {
            const PlanarSound read = scratch.view().first(sound.frames());
            readRing(read);
            if (narrows) {
                const PlanarSound narrow = linkScratch.view().narrowedTo(linkChannels).first(sound.frames());
                mapChannels(read, narrow);
                mapChannels(narrow, sound);
            } else {
                mapChannels(read, sound);
            }
        }
        isLow = ring.readable() <= ring.capacity() / 2;
    } else {
        fillWithSilence(sound);
    }
    if (isLow && !offline.load(std::memory_order_relaxed)) wakeDecoder();
}

bool PlayerVoice::isProvided(std::uint32_t frames) noexcept {
    if (!playing.load(std::memory_order_relaxed)) return true;
    const Gate::Passage inside = gate.enter();
    return inside && holdsFor(frames);
}

bool PlayerVoice::holdsFor(std::uint32_t frames) const noexcept {
    return ring.readable() >= std::min(path->inputFor(frames), ring.capacity());
}

void PlayerVoice::wakeDecoder() noexcept {
    if (decoderSleeps.exchange(false)) wake.signal();
}

} // namespace platform
