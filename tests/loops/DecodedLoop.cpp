// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "DecodedLoop.hpp"

#include <memory>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace tonewright::loops {

namespace {

struct Closer {
    void operator()(AVFormatContext* context) const { avformat_close_input(&context); }
    void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};

void take(DecodedLoop& loop, AVCodecContext& decoder, AVFrame& frame) {
    while (avcodec_receive_frame(&decoder, &frame) >= 0) {
        loop.decodedFrames += frame.nb_samples;
        for (std::size_t channel = 0; channel < loop.channels.size(); ++channel) {
            const auto* samples = reinterpret_cast<const float*>(frame.data[channel]);
            loop.channels[channel].insert(loop.channels[channel].end(), samples, samples + frame.nb_samples);
        }
    }
}

} // namespace

DecodedLoop decodeLoop(const std::filesystem::path& file) {
    DecodedLoop loop;
    AVFormatContext* opened = nullptr;
    if (avformat_open_input(&opened, file.c_str(), nullptr, nullptr) < 0) {
        loop.fault = "cannot be opened";
        return loop;
    }
    const std::unique_ptr<AVFormatContext, Closer> container(opened);
    if (container->nb_streams != 1) {
        loop.fault = "does not hold one stream";
        return loop;
    }
    const AVStream& stream = *container->streams[0];
    const std::unique_ptr<AVCodecContext, Closer> decoder(
        avcodec_alloc_context3(avcodec_find_decoder(stream.codecpar->codec_id)));
    avcodec_parameters_to_context(decoder.get(), stream.codecpar);
    decoder->pkt_timebase = stream.time_base;
    if (avcodec_open2(decoder.get(), nullptr, nullptr) < 0 || decoder->sample_fmt != AV_SAMPLE_FMT_FLTP) {
        loop.fault = "cannot be decoded";
        return loop;
    }
    if (const AVDictionaryEntry* title = av_dict_get(container->metadata, "title", nullptr, 0))
        loop.title = title->value;
    loop.rate = decoder->sample_rate;
    loop.statedFrames = av_rescale_q(stream.duration, stream.time_base, {1, loop.rate});
    loop.channels.resize(static_cast<std::size_t>(decoder->ch_layout.nb_channels));
    const std::unique_ptr<AVPacket, Closer> packet(av_packet_alloc());
    const std::unique_ptr<AVFrame, Closer> frame(av_frame_alloc());
    while (av_read_frame(container.get(), packet.get()) >= 0) {
        avcodec_send_packet(decoder.get(), packet.get());
        av_packet_unref(packet.get());
        take(loop, *decoder, *frame);
    }
    avcodec_send_packet(decoder.get(), nullptr);
    take(loop, *decoder, *frame);
    if (loop.decodedFrames < loop.statedFrames) loop.fault = "holds less than it says";
    for (std::vector<float>& channel : loop.channels) {
        channel.resize(static_cast<std::size_t>(loop.statedFrames));
    }
    return loop;
}

} // namespace tonewright::loops
