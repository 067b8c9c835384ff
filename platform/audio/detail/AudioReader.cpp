// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/AudioReader.hpp"

#include "platform/audio/detail/samplePlanes.hpp"
#include "platform/foundation/console.hpp"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <mutex>
#include <optional>
#include <string_view>

namespace platform {
namespace {

struct CloseFormat {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
};
struct FreeCodec {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
};
struct FreePacket {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FreeFrame {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};

Error fileError(int code, std::string sentence) {
    return {"AVAudioFile", code, std::move(sentence)};
}

std::string quoted(const std::string& path) {
    return "The file \"" + path.substr(path.rfind('/') + 1) + "\"";
}

} // namespace

struct AudioReader::Library {
    std::unique_ptr<AVFormatContext, CloseFormat> container;
    std::unique_ptr<AVCodecContext, FreeCodec> codec;
    std::unique_ptr<AVPacket, FreePacket> packet{av_packet_alloc()};
    std::unique_ptr<AVFrame, FreeFrame> frame{av_frame_alloc()};
    AVStream* stream = nullptr; // the container's
    std::string path;
    AVAudioFormat format;
    std::int64_t length = 0;
    bool lengthIsStated = false; // so a pass has exactly this length
    bool isMov = false;

    std::uint32_t frameOffset = 0; // frames of `frame` already returned
    std::uint32_t frameLength = 0; // frames in `frame`
    std::int64_t position = 0;     // frames returned in this pass
    std::int64_t silence = 0;      // frames of silence to return before `frame`
    bool draining = false;         // the container's end was reached
    bool finished = false;         // and the codec's
    bool resynchronise = false;    // something was lost: the next frame's time stamp tells where it belongs
    bool saidDamaged = false;

    std::optional<Error> open();
    bool openCodec();
    void findLength();
    bool decodeFrame();
    bool acceptFrame();
    void reportDamage();
    [[nodiscard]] std::int64_t scaled(std::int64_t time) const {
        return av_rescale_q(time, stream->time_base, AVRational{1, static_cast<int>(format.sampleRate)});
    }
};

std::optional<Error> AudioReader::Library::open() {
    static std::once_flag quiet; // its complaints about damaged files are reported by us
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
    // Larger packets than the demuxer's 4 kB: fewer of them.
    av_opt_set_int(container->priv_data, "max_size", 16384, 0);

    // The header is enough for the usual files; others are probed.
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

    // The first frame shows the decoder's real output format.
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

bool AudioReader::Library::openCodec() {
    const AVCodec* decoder = avcodec_find_decoder(stream->codecpar->codec_id);
    if (decoder == nullptr) return false;
    codec.reset(avcodec_alloc_context3(decoder));
    if (avcodec_parameters_to_context(codec.get(), stream->codecpar) < 0) return false;
    codec->pkt_timebase = stream->time_base; // without it the priming frames are not trimmed
    codec->thread_count = 1;                 // the player has a thread for this already
    return avcodec_open2(codec.get(), decoder, nullptr) == 0;
}

void AudioReader::Library::findLength() {
    const std::string_view name = container->iformat->name;
    const bool pcm = av_get_exact_bits_per_sample(stream->codecpar->codec_id) > 0;
    if (stream->duration > 0) length = scaled(stream->duration);
    lengthIsStated = length > 0 && (isMov || pcm || name == "flac");
    if (pcm && name == "wav" && stream->codecpar->block_align > 0) {
        // A header that promises more than the file contains (a truncated recording, or one of unknown
        // length).
        const std::int64_t present = avio_size(container->pb) / stream->codecpar->block_align;
        if (length <= 0 || length > present) length = present;
    }
    if (length <= 0 && container->duration > 0) {
        length = av_rescale(container->duration, static_cast<std::int64_t>(format.sampleRate), AV_TIME_BASE);
    }
    if (length <= 0) {
        length = frame->nb_samples; // at least what has been decoded; the pass ends where the file does
    }
}

void AudioReader::Library::reportDamage() {
    resynchronise = true;
    if (!saidDamaged) warn(quoted(path) + " is damaged; what is missing in it is played as silence.");
    saidDamaged = true;
}

// Decodes until `frame` has frames to return, and notes the `silence` before them; false at the end.
bool AudioReader::Library::decodeFrame() {
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
        if (draining) { // everything was sent; a decoder that asks for more has ended, too
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

// Uses the decoded frame; false if nothing of it is to be returned.
bool AudioReader::Library::acceptFrame() {
    frameOffset = 0;
    frameLength = static_cast<std::uint32_t>(std::max(frame->nb_samples, 0));
    if (format.sampleRate > 0 && (frame->sample_rate != static_cast<int>(format.sampleRate) ||
                                  frame->ch_layout.nb_channels != static_cast<int>(format.channelCount))) {
        reportDamage(); // the format changed in the middle
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

Result<std::unique_ptr<AudioReader>> AudioReader::open(const std::string& path) {
    auto library = std::make_unique<Library>();
    library->path = path;
    if (auto error = library->open()) return *std::move(error);
    return std::unique_ptr<AudioReader>(new AudioReader(std::move(library)));
}

AudioReader::AudioReader(std::unique_ptr<Library> library)
    : _library(std::move(library)) {}

AudioReader::~AudioReader() = default;

AVAudioFormat AudioReader::format() const noexcept {
    return _library->format;
}

std::int64_t AudioReader::lengthFrames() const noexcept {
    return _library->length;
}

bool AudioReader::isAtEnd() const noexcept {
    return _library->lengthIsStated && _library->position == _library->length;
}

std::uint32_t AudioReader::read(PlanarSound sound) {
    Library& library = *_library;
    if (library.frameOffset == library.frameLength && library.silence == 0 && !library.decodeFrame()) {
        // A pass is as long as the file says, and never empty.
        if (library.lengthIsStated || library.position == 0) {
            if (library.position < library.length) library.reportDamage();
            library.silence = library.length - library.position;
        }
        library.frameOffset = library.frameLength = 0;
    }
    const bool silent = library.silence > 0;
    std::int64_t count = silent ? library.silence : library.frameLength - library.frameOffset;
    count = std::min<std::int64_t>(count, sound.frames());
    if (library.lengthIsStated) count = std::min(count, library.length - library.position);
    const auto frames = static_cast<std::uint32_t>(std::max<std::int64_t>(count, 0));
    if (silent) {
        fillWithSilence(sound.first(frames));
        library.silence -= frames;
    } else if (frames > 0) {
        const AVFrame& frame = *library.frame;
        const auto format = static_cast<AVSampleFormat>(frame.format);
        const bool planar = av_sample_fmt_is_planar(format) != 0;
        const auto copy = [&]<class Sample>(Sample) {
            copyToPlanes<Sample>(frame.extended_data, planar, library.frameOffset, sound.first(frames));
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
        library.frameOffset += frames;
    }
    library.position += frames;
    return frames;
}

bool AudioReader::rewind() {
    Library& library = *_library;
    if (library.position == 0) return true;
    // To the very first packet: the decoder starts up with those that an edit list hides.
    const AVIndexEntry* first = avformat_index_get_entry(library.stream, 0);
    const std::int64_t start = first == nullptr ? 0 : std::min<std::int64_t>(first->timestamp, 0);
    const int answer =
        av_seek_frame(library.container.get(), library.stream->index, start, AVSEEK_FLAG_BACKWARD);
    if (answer < 0) return false;
    avcodec_flush_buffers(library.codec.get());
    library.frameOffset = library.frameLength = 0;
    library.position = library.silence = 0;
    library.draining = library.finished = library.resynchronise = false;
    return true;
}

} // namespace platform
