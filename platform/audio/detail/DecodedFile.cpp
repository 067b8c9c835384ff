// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/DecodedFile.hpp"

#include "platform/foundation/console.hpp"

extern "C" {
#include <libavutil/opt.h>
}

#include <algorithm>
#include <mutex>
#include <string_view>
#include <utility>

namespace platform {
namespace {

Error fileError(int code, std::string sentence) {
    return {"AVAudioFile", code, std::move(sentence)};
}

std::string quoted(const std::string& path) {
    return "The file \"" + path.substr(path.rfind('/') + 1) + "\"";
}

} // namespace

std::optional<Error> DecodedFile::open() {
    static std::once_flag quiet; // this program reports damaged files itself
    std::call_once(quiet, [] { av_log_set_level(AV_LOG_QUIET); });

    AVFormatContext* opened = nullptr;
    AVDictionary* options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    const int answer = avformat_open_input(&opened, ("file:" + path).c_str(), nullptr, &options);
    av_dict_free(&options);
    if (answer == AVERROR(ENOENT)) {
        return fileError(answer, quoted(path) + " couldn't be opened because there is no such file.");
    }
    if (answer == AVERROR(EACCES)) {
        return fileError(answer,
                         quoted(path) + " couldn't be opened because you don't have permission to view it.");
    }
    if (answer < 0) {
        return fileError(answer,
                         quoted(path) + " couldn't be opened because it isn't a sound file or is damaged.");
    }
    container.reset(opened);

    const std::string_view name = container->iformat->name;
    isMov = name.find("mov") != std::string_view::npos;
    // Reads fewer and larger packets than the demuxer's default of 4 kB.
    av_opt_set_int(container->priv_data, "max_size", 16384, 0);

    // The header of most files is sufficient; other files are probed.
    int index = av_find_best_stream(container.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0 || container->streams[index]->codecpar->sample_rate <= 0 ||
        container->streams[index]->codecpar->ch_layout.nb_channels <= 0 ||
        container->streams[index]->duration <= 0) {
        avformat_find_stream_info(container.get(), nullptr);
        index = av_find_best_stream(container.get(), AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    }
    if (index < 0) {
        return fileError(index, quoted(path) + " couldn't be opened because there is no sound in it.");
    }
    for (unsigned i = 0; i < container->nb_streams; ++i) {
        if (static_cast<int>(i) != index) container->streams[i]->discard = AVDISCARD_ALL;
    }
    stream = container->streams[index];
    if (!openCodec()) {
        return fileError(AVERROR_DECODER_NOT_FOUND,
                         quoted(path) + " couldn't be opened because its sound format isn't supported.");
    }

    // The decoder's actual output format is known only from the first frame.
    const bool decoded = decodeFrame();
    if (decoded) {
        format = {static_cast<double>(frame->sample_rate),
                  static_cast<std::uint32_t>(frame->ch_layout.nb_channels)};
        findLength();
    }
    if (!decoded || length <= 0 || format.sampleRate <= 0 || format.channelCount == 0) {
        return fileError(AVERROR_INVALIDDATA,
                         quoted(path) + " couldn't be opened because there are no sound frames in it.");
    }
    return std::nullopt;
}

bool DecodedFile::openCodec() {
    const AVCodec* decoder = avcodec_find_decoder(stream->codecpar->codec_id);
    if (decoder == nullptr) return false;
    codec.reset(avcodec_alloc_context3(decoder));
    if (avcodec_parameters_to_context(codec.get(), stream->codecpar) < 0) return false;
    codec->pkt_timebase = stream->time_base; // otherwise the priming frames are not trimmed
    codec->thread_count = 1;                 // the player already decodes on its own thread
    return avcodec_open2(codec.get(), decoder, nullptr) == 0;
}

void DecodedFile::findLength() {
    const std::string_view name = container->iformat->name;
    const bool pcm = av_get_exact_bits_per_sample(stream->codecpar->codec_id) > 0;
    if (stream->duration > 0) length = scaled(stream->duration);
    lengthIsStated = length > 0 && (isMov || pcm || name == "flac");
    if (pcm && name == "wav" && stream->codecpar->block_align > 0) {
        // The header of a truncated recording, or of a stream of unknown length, states more frames than the
        // file contains.
        const std::int64_t present = avio_size(container->pb) / stream->codecpar->block_align;
        if (length <= 0 || length > present) length = present;
    }
    if (length <= 0 && container->duration > 0) {
        length = av_rescale(container->duration, static_cast<std::int64_t>(format.sampleRate), AV_TIME_BASE);
    }
    if (length <= 0) {
        length = frame->nb_samples; // a lower bound; the pass ends at the end of the file
    }
}

void DecodedFile::reportDamage() {
    resynchronise = true;
    if (!saidDamaged) warn(quoted(path) + " is damaged; its damaged parts are played as silence.");
    saidDamaged = true;
}

bool DecodedFile::decodeFrame() {
    while (!finished) {
        const int received = avcodec_receive_frame(codec.get(), frame.get());
        if (received == 0) {
            if (acceptFrame()) return true;
            continue;
        }
        if (received == AVERROR_EOF) {
            finished = true;
            break;
        }
        if (received != AVERROR(EAGAIN)) reportDamage();
        if (draining) { // a decoder that still requests data has ended too
            finished = true;
            break;
        }
        const int read = av_read_frame(container.get(), packet.get());
        if (read < 0) {
            if (read != AVERROR_EOF) reportDamage();
            draining = true;
            avcodec_send_packet(codec.get(), nullptr);
            continue;
        }
        if (packet->stream_index == stream->index && avcodec_send_packet(codec.get(), packet.get()) < 0) {
            reportDamage();
        }
        av_packet_unref(packet.get());
    }
    return false;
}

// Checks and places the decoded frame. Returns false if the whole frame must be skipped.
bool DecodedFile::acceptFrame() {
    frameOffset = 0;
    frameLength = static_cast<std::uint32_t>(std::max(frame->nb_samples, 0));
    if (format.sampleRate > 0 && (frame->sample_rate != static_cast<int>(format.sampleRate) ||
                                  frame->ch_layout.nb_channels != static_cast<int>(format.channelCount))) {
        reportDamage(); // the format changed within the file
        return false;
    }
    if (resynchronise && format.sampleRate > 0 && frame->pts != AV_NOPTS_VALUE) {
        const std::int64_t start =
            scaled(frame->pts - (stream->start_time == AV_NOPTS_VALUE ? 0 : stream->start_time));
        resynchronise = false;
        if (start > position) silence = start - position;
        if (start < position) {
            frameOffset = static_cast<std::uint32_t>(std::min<std::int64_t>(position - start, frameLength));
        }
    }
    return frameOffset < frameLength;
}

} // namespace platform
