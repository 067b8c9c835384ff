// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/AudioReader.hpp"

#include "platform/audio/detail/DecodedFile.hpp"
#include "platform/audio/detail/samplePlanes.hpp"

#include <algorithm>
#include <utility>

namespace platform {

Result<std::unique_ptr<AudioReader>> AudioReader::open(const std::string& path) {
    auto file = std::make_unique<DecodedFile>();
    file->path = path;
    if (auto error = file->open()) return *std::move(error);
    return std::unique_ptr<AudioReader>(new AudioReader(std::move(file)));
}

AudioReader::AudioReader(std::unique_ptr<DecodedFile> file)
    : _file(std::move(file)) {}

AudioReader::~AudioReader() = default;

AVAudioFormat AudioReader::format() const noexcept {
    return _file->format;
}

std::int64_t AudioReader::lengthFrames() const noexcept {
    return _file->length;
}

bool AudioReader::isAtEnd() const noexcept {
    return _file->lengthIsStated && _file->position == _file->length;
}

std::uint32_t AudioReader::read(PlanarSound sound) {
    DecodedFile& file = *_file;
    if (file.frameOffset == file.frameLength && file.silence == 0 && !file.decodeFrame()) {
        // A pass is as long as the file states, and never empty.
        if (file.lengthIsStated || file.position == 0) {
            if (file.position < file.length) file.reportDamage();
            file.silence = file.length - file.position;
        }
        file.frameOffset = file.frameLength = 0;
    }
    const bool silent = file.silence > 0;
    std::int64_t count = silent ? file.silence : file.frameLength - file.frameOffset;
    count = std::min<std::int64_t>(count, sound.frames());
    if (file.lengthIsStated) count = std::min(count, file.length - file.position);
    const auto frames = static_cast<std::uint32_t>(std::max<std::int64_t>(count, 0));
    if (silent) {
        fillWithSilence(sound.first(frames));
        file.silence -= frames;
    } else if (frames > 0) {
        const AVFrame& frame = *file.frame;
        const auto format = static_cast<AVSampleFormat>(frame.format);
        const bool planar = av_sample_fmt_is_planar(format) != 0;
        const auto copy = [&]<class Sample>(Sample) {
            copyToPlanes<Sample>(frame.extended_data, planar, file.frameOffset, sound.first(frames));
        };
        switch (av_get_packed_sample_fmt(format)) {
        case AV_SAMPLE_FMT_U8:
            copy(std::uint8_t{});
            break;
        case AV_SAMPLE_FMT_S16:
            copy(std::int16_t{});
            break;
        case AV_SAMPLE_FMT_S32:
            copy(std::int32_t{});
            break;
        case AV_SAMPLE_FMT_S64:
            copy(std::int64_t{});
            break;
        case AV_SAMPLE_FMT_DBL:
            copy(double{});
            break;
        default:
            copy(float{});
            break;
        }
        file.frameOffset += frames;
    }
    file.position += frames;
    return frames;
}

bool AudioReader::rewind() {
    DecodedFile& file = *_file;
    if (file.position == 0) return true;
    // Seeks to the very first packet, because the decoder also needs the packets that an edit list skips.
    const AVIndexEntry* first = avformat_index_get_entry(file.stream, 0);
    const std::int64_t start = first == nullptr ? 0 : std::min<std::int64_t>(first->timestamp, 0);
    const int answer = av_seek_frame(file.container.get(), file.stream->index, start, AVSEEK_FLAG_BACKWARD);
    if (answer < 0) return false;
    avcodec_flush_buffers(file.codec.get());
    file.frameOffset = file.frameLength = 0;
    file.position = file.silence = 0;
    file.draining = file.finished = file.resynchronise = false;
    return true;
}

} // namespace platform
