// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "LoopEncoder.hpp"

#include "loops/synth/ExactMath.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/dict.h>
#include <libavutil/log.h>
#include <libavutil/opt.h>
}

namespace tonewright::loops {

namespace {

constexpr std::int64_t Block = 1024;
constexpr std::int64_t HiddenPackets = 2;
constexpr std::int64_t WarmBlocks = 24; // for the encoder's rate control; their packets are not written

/// One way to encode a loop: the bit rate of two channels, and the factor by which the blocks around the seam
/// exceed it.
struct Attempt {
    int bitRate;
    double seamShare;
};
constexpr std::array<Attempt, 7> Attempts{{{192000, 1.3},
                                           {192000, 1.6},
                                           {192000, 2.0},
                                           {192000, 2.6},
                                           {224000, 1.3},
                                           {256000, 1.3},
                                           {256000, 1.8}}};

// An attempt is accepted if its coding error is no larger around the seam than elsewhere and its peak is
// within bounds.
constexpr double AcceptedExcess = 0.0; // decibels
constexpr double AcceptedPeak = 0.98;
constexpr std::int64_t AroundSeam = 2000; // frames on either side

struct Closer {
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFormatContext* context) const {
        if (context->pb != nullptr) avio_closep(&context->pb);
        avformat_free_context(context);
    }
};
struct ParameterCloser {
    void operator()(AVCodecParameters* parameters) const { avcodec_parameters_free(&parameters); }
};
using CodecContext = std::unique_ptr<AVCodecContext, Closer>;
using Frame = std::unique_ptr<AVFrame, Closer>;
using Packet = std::unique_ptr<AVPacket, Closer>;
using Container = std::unique_ptr<AVFormatContext, Closer>;

std::string errorText(const char* doing, int code) {
    std::array<char, AV_ERROR_MAX_STRING_SIZE> text{};
    av_strerror(code, text.data(), text.size());
    return std::string(doing) + ": " + text.data();
}

/// Copies a block that begins at `start`, which may lie outside the loop, into a frame; positions wrap.
void fill(AVFrame& frame, const Pcm& pcm, std::int64_t start) {
    const auto length = static_cast<std::int64_t>(pcm.frames());
    if (length == 0) return;
    for (std::size_t channel = 0; channel < pcm.channels.size(); ++channel) {
        auto* target = reinterpret_cast<float*>(frame.data[channel]); // the encoder accepts planar floats
        for (std::int64_t index = 0; index < Block; ++index) {
            const std::int64_t place = (((start + index) % length) + length) % length;
            target[index] = pcm.channels[channel][static_cast<std::size_t>(place)];
        }
    }
}

struct Encoded {
    CodecContext encoder;
    std::vector<Packet> packets;
    std::string fault;
};

/// Returns whether the block that begins at `start` overlaps the frames around the seam.
bool touchesSeam(std::int64_t start, std::int64_t length) {
    const std::int64_t window = 2 * Block;
    return (start < AroundSeam && start + window > -AroundSeam) ||
           (start < length + AroundSeam && start + window > length - AroundSeam);
}

/// Encodes the loop preceded by its own end and followed by its own beginning. The blocks around the seam get
/// `seamShare` times the bit rate.
Encoded encodePackets(const Pcm& pcm, const Attempt& attempt) {
    Encoded result;
    const AVCodec* codec = avcodec_find_encoder(AV_CODEC_ID_AAC);
    if (codec == nullptr) {
        result.fault = "libavcodec has no AAC encoder";
        return result;
    }
    result.encoder.reset(avcodec_alloc_context3(codec));
    AVCodecContext& encoder = *result.encoder;
    const int channels = static_cast<int>(pcm.channels.size());
    encoder.sample_fmt = AV_SAMPLE_FMT_FLTP;
    encoder.sample_rate = pcm.rate;
    encoder.time_base = {1, pcm.rate};
    const int bitRate = channels == 1 ? attempt.bitRate * 5 / 8 : attempt.bitRate;
    encoder.bit_rate = bitRate;
    encoder.profile = FF_PROFILE_AAC_LOW;
    encoder.cutoff = 20000;
    encoder.flags |= AV_CODEC_FLAG_GLOBAL_HEADER | AV_CODEC_FLAG_BITEXACT;
    encoder.thread_count = 1;
    av_channel_layout_default(&encoder.ch_layout, channels);
    // Noise substitution and intensity stereo sound similar but do not preserve the waveform.
    av_opt_set(encoder.priv_data, "aac_pns", "0", 0);
    av_opt_set(encoder.priv_data, "aac_is", "0", 0);
    if (int code = avcodec_open2(&encoder, codec, nullptr); code < 0) {
        result.fault = errorText("opening the AAC encoder", code);
        return result;
    }
    const auto length = static_cast<std::int64_t>(pcm.frames());
    const std::int64_t first = -(WarmBlocks * Block);
    const std::int64_t end = length + 4 * Block;
    std::int64_t next = first - encoder.initial_padding; // position of the next packet's samples in the loop
    const auto collect = [&]() {
        while (true) {
            Packet packet(av_packet_alloc());
            const int code = avcodec_receive_packet(&encoder, packet.get());
            if (code < 0) return code == AVERROR(EAGAIN) || code == AVERROR_EOF ? 0 : code;
            packet->pts = packet->dts = next;
            packet->duration = std::min(Block, length - next);
            next += Block;
            if (packet->pts >= -HiddenPackets * Block && packet->pts < length) {
                result.packets.push_back(std::move(packet));
            }
        }
    };
    for (std::int64_t start = first; start < end; start += Block) {
        Frame frame(av_frame_alloc());
        frame->format = encoder.sample_fmt;
        frame->nb_samples = static_cast<int>(Block);
        frame->sample_rate = pcm.rate;
        frame->pts = start;
        av_channel_layout_default(&frame->ch_layout, channels);
        int code = av_frame_get_buffer(frame.get(), 0);
        if (code >= 0) {
            fill(*frame, pcm, start);
            // The encoder reads the bit rate before each block; the block that it encodes next begins at
            // `next`.
            encoder.bit_rate =
                touchesSeam(next, length) ? static_cast<std::int64_t>(bitRate * attempt.seamShare) : bitRate;
            code = avcodec_send_frame(&encoder, frame.get());
        }
        if (code >= 0) code = collect();
        if (code < 0) {
            result.fault = errorText("encoding", code);
            return result;
        }
    }
    avcodec_send_frame(&encoder, nullptr);
    if (const int code = collect(); code < 0) result.fault = errorText("encoding", code);
    return result;
}

std::optional<std::string> writeFile(Encoded& encoded, const std::string& title,
                                     const std::filesystem::path& file) {
    AVFormatContext* made = nullptr;
    int code = avformat_alloc_output_context2(&made, nullptr, "ipod", file.c_str());
    if (code < 0) return errorText("preparing the container", code);
    const Container container(made);
    container->flags |= AVFMT_FLAG_BITEXACT;
    av_dict_set(&container->metadata, "title", title.c_str(), 0);
    AVStream* stream = avformat_new_stream(container.get(), nullptr);
    stream->time_base = encoded.encoder->time_base;
    code = avcodec_parameters_from_context(stream->codecpar, encoded.encoder.get());
    if (code >= 0) code = avio_open(&container->pb, file.c_str(), AVIO_FLAG_WRITE);
    if (code < 0) return errorText("opening the file for writing", code);

    // The edit list counts in the movie's time scale, so it is exact only if that is the sample rate.
    AVDictionary* options = nullptr;
    av_dict_set_int(&options, "movie_timescale", encoded.encoder->sample_rate, 0);
    av_dict_set(&options, "movflags", "+faststart", 0);
    code = avformat_write_header(container.get(), &options);
    av_dict_free(&options);
    if (code < 0) return errorText("writing the header", code);
    for (const Packet& packet : encoded.packets) {
        packet->stream_index = 0;
        av_packet_rescale_ts(packet.get(), encoded.encoder->time_base, stream->time_base);
        code = av_write_frame(container.get(), packet.get());
        if (code < 0) return errorText("writing", code);
    }
    code = av_write_trailer(container.get());
    if (code < 0) return errorText("finishing the file", code);
    return std::nullopt;
}

/// The result of decoding the packets again.
struct Proof {
    double seamExcess = 0.0; // decibels by which the error around the seam exceeds the error elsewhere
    double peak = 0.0;
};

/// Decodes the packets and compares the result with the samples; returns no value if they cannot be decoded.
std::optional<Proof> prove(const Encoded& encoded, const Pcm& pcm) {
    const CodecContext decoder(avcodec_alloc_context3(avcodec_find_decoder(AV_CODEC_ID_AAC)));
    std::unique_ptr<AVCodecParameters, ParameterCloser> parameters(avcodec_parameters_alloc());
    avcodec_parameters_from_context(parameters.get(), encoded.encoder.get());
    avcodec_parameters_to_context(decoder.get(), parameters.get());
    if (avcodec_open2(decoder.get(), nullptr, nullptr) < 0) return std::nullopt;
    const auto length = static_cast<std::int64_t>(pcm.frames());
    const Frame frame(av_frame_alloc());
    double seam = 0.0;
    double rest = 0.0;
    double peak = 0.0;
    for (const Packet& packet : encoded.packets) {
        if (avcodec_send_packet(decoder.get(), packet.get()) < 0) return std::nullopt;
        if (avcodec_receive_frame(decoder.get(), frame.get()) < 0) {
            return std::nullopt; // the AAC decoder returns a frame for every packet
        }
        for (std::size_t channel = 0; channel < pcm.channels.size(); ++channel) {
            const auto* samples = reinterpret_cast<const float*>(frame->data[channel]);
            for (std::int64_t index = 0; index < frame->nb_samples; ++index) {
                const std::int64_t place = packet->pts + index;
                if (place < 0 || place >= length) continue;
                peak = std::max(peak, std::fabs(static_cast<double>(samples[index])));
                const double error = static_cast<double>(
                    samples[index] - pcm.channels[channel][static_cast<std::size_t>(place)]);
                (place < AroundSeam || place >= length - AroundSeam ? seam : rest) += error * error;
            }
        }
    }
    const double seamPower = seam / static_cast<double>(2 * AroundSeam);
    const double restPower = rest / static_cast<double>(length - 2 * AroundSeam);
    return Proof{decibelsOfGain((seamPower + 1e-15) / (restPower + 1e-15)) * 0.5, peak};
}

} // namespace

std::optional<std::string> encodeLoop(const Pcm& pcm, const std::string& title,
                                      const std::filesystem::path& file) {
    Encoded best;
    double least = 1e9;
    for (const Attempt& attempt : Attempts) {
        Encoded encoded = encodePackets(pcm, attempt);
        if (!encoded.fault.empty()) return encoded.fault;
        const std::optional<Proof> proof = prove(encoded, pcm);
        if (!proof) return "the encoded packets cannot be decoded";
        // A peak above the limit counts more than any error at the seam.
        const double badness =
            std::max(proof->seamExcess, AcceptedExcess) + 1000.0 * std::max(proof->peak - AcceptedPeak, 0.0);
        if (badness < least) {
            least = badness;
            best = std::move(encoded);
        }
        if (least <= AcceptedExcess) break;
    }
    return writeFile(best, title, file);
}

void quietEncoder() noexcept {
    av_log_set_level(AV_LOG_ERROR);
}

} // namespace tonewright::loops
