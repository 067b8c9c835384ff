// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "WavFile.hpp"

#include <memory>
#include <sndfile.h>

namespace tonewright::loops {

std::optional<std::string> writeWav(const Pcm& pcm, const std::filesystem::path& file) {
    SF_INFO info{};
    info.samplerate = pcm.rate;
    info.channels = static_cast<int>(pcm.channels.size());
    info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
    struct Close {
        void operator()(SNDFILE* opened) const { sf_close(opened); }
    };
    std::unique_ptr<SNDFILE, Close> opened(sf_open(file.c_str(), SFM_WRITE, &info));
    if (!opened) return sf_strerror(nullptr);
    // A PEAK chunk contains the time of day, so the same recipe would produce a different file each time.
    sf_command(opened.get(), SFC_SET_ADD_PEAK_CHUNK, nullptr, SF_FALSE);

    std::vector<float> interleaved;
    interleaved.reserve(pcm.frames() * pcm.channels.size());
    for (std::size_t frame = 0; frame < pcm.frames(); ++frame) {
        for (const std::vector<float>& channel : pcm.channels) {
            interleaved.push_back(channel[frame]);
        }
    }
    const auto frames = static_cast<sf_count_t>(pcm.frames());
    if (sf_writef_float(opened.get(), interleaved.data(), frames) != frames) return sf_strerror(opened.get());
    if (const int failure = sf_close(opened.release()); failure != 0) return sf_error_number(failure);
    return std::nullopt;
}

} // namespace tonewright::loops
