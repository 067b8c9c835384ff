// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The shortest program that renders a looped stereo file through an LV2 effect in blocks: it opens and
// decodes the file, cuts the frames into blocks of one size, runs the effect on each block and starts again
// at the end of the file. Each of these steps is needed to produce the sound. The program has no graph, no
// threads and no schedule, converts nothing and checks nothing; it accepts only planar floats or 16-bit
// samples.
// Usage: bench_render_limit FILE PLUGIN_URI BLOCK_FRAMES SECONDS [OUTPUT]
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}
#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace {

// The effect requires the two features URID map and options.
LV2_URID mapUri(LV2_URID_Map_Handle /*handle*/, const char* uri) {
    static std::map<std::string, LV2_URID> known;
    return known.try_emplace(uri, static_cast<LV2_URID>(known.size() + 1)).first->second;
}

} // namespace

int main(int count, char** arguments) {
    if (count < 5) return 1;
    const auto block = static_cast<std::size_t>(std::atoi(arguments[3]));

    AVFormatContext* container = nullptr;
    if (avformat_open_input(&container, arguments[1], nullptr, nullptr) < 0) return 1;
    AVStream* stream = container->streams[0];
    const AVCodec* decoder = avcodec_find_decoder(stream->codecpar->codec_id);
    AVCodecContext* codec = avcodec_alloc_context3(decoder);
    avcodec_parameters_to_context(codec, stream->codecpar);
    codec->pkt_timebase = stream->time_base;
    codec->thread_count = 1;
    avcodec_open2(codec, decoder, nullptr);
    const double rate = stream->codecpar->sample_rate;

    LilvWorld* world = lilv_world_new();
    lilv_world_load_all(world);
    LilvNode* uri = lilv_new_uri(world, arguments[2]);
    const LilvPlugin* plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world), uri);
    LV2_URID_Map map{nullptr, mapUri};
    const auto blockLength = static_cast<std::int32_t>(block);
    const LV2_URID integer = mapUri(nullptr, LV2_ATOM__Int);
    const LV2_Options_Option options[] = {{LV2_OPTIONS_INSTANCE, 0,
                                           mapUri(nullptr, LV2_BUF_SIZE__maxBlockLength), sizeof blockLength,
                                           integer, &blockLength},
                                          {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    const LV2_Feature mapFeature{LV2_URID__map, &map};
    const LV2_Feature optionsFeature{LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(options)};
    const LV2_Feature* const features[] = {&mapFeature, &optionsFeature, nullptr};
    LilvInstance* instance = lilv_plugin_instantiate(plugin, rate, features);
    const std::uint32_t ports = lilv_plugin_get_num_ports(plugin);
    std::vector<float> controls(ports);
    lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, controls.data());
    LilvNode* audioClass = lilv_new_uri(world, LILV_URI_AUDIO_PORT);
    LilvNode* inputClass = lilv_new_uri(world, LILV_URI_INPUT_PORT);
    std::vector<std::vector<float>> in(2, std::vector<float>(block));
    std::vector<std::vector<float>> out(2, std::vector<float>(block));
    std::size_t ins = 0;
    std::size_t outs = 0;
    for (std::uint32_t p = 0; p < ports; ++p) {
        const LilvPort* port = lilv_plugin_get_port_by_index(plugin, p);
        float* place = &controls[p];
        if (lilv_port_is_a(plugin, port, audioClass)) {
            place = lilv_port_is_a(plugin, port, inputClass) ? in[ins++].data() : out[outs++].data();
        }
        lilv_instance_connect_port(instance, p, place);
    }
    lilv_instance_activate(instance);

    std::FILE* output = count > 5 ? std::fopen(arguments[5], "wb") : nullptr;
    std::vector<float> both(2 * block);
    AVPacket* packet = av_packet_alloc();
    AVFrame* frame = av_frame_alloc();
    auto left = static_cast<std::int64_t>(std::atof(arguments[4]) * rate);
    std::int64_t position = 0; // in the file; frames of the padding at its end are dropped
    std::size_t filled = 0;
    // The hidden packets at the beginning have to be decoded first, because the decoder's start-up depends on
    // them.
    const AVIndexEntry* entry = avformat_index_get_entry(stream, 0);
    const std::int64_t first = entry == nullptr ? 0 : entry->timestamp;
    while (left > 0) {
        if (avcodec_receive_frame(codec, frame) < 0) {
            if (av_read_frame(container, packet) < 0) {
                av_seek_frame(container, 0, first, AVSEEK_FLAG_BACKWARD);
                avcodec_flush_buffers(codec);
                position = 0;
                continue;
            }
            avcodec_send_packet(codec, packet);
            av_packet_unref(packet);
            continue;
        }
        const auto given = std::min<std::int64_t>(frame->nb_samples, stream->duration - position);
        position += frame->nb_samples;
        for (std::int64_t used = 0; used < given;) {
            const auto part = std::min<std::int64_t>(given - used, static_cast<std::int64_t>(block - filled));
            for (std::size_t c = 0; c < 2; ++c) {
                float* target = in[c].data() + filled;
                if (frame->format == AV_SAMPLE_FMT_FLTP) {
                    std::copy_n(reinterpret_cast<const float*>(frame->data[c]) + used, part, target);
                } else {
                    const auto* samples =
                        reinterpret_cast<const std::int16_t*>(frame->data[0]) + 2 * used + c;
                    for (std::int64_t i = 0; i < part; ++i) {
                        target[i] = static_cast<float>(samples[2 * i]) * 0x1p-15F;
                    }
                }
            }
            used += part;
            filled += static_cast<std::size_t>(part);
            if (filled < block) continue;
            filled = 0;
            lilv_instance_run(instance, static_cast<std::uint32_t>(block));
            left -= static_cast<std::int64_t>(block);
            if (output == nullptr) continue;
            for (std::size_t i = 0; i < block; ++i) {
                both[2 * i] = out[0][i];
                both[2 * i + 1] = out[1][i];
            }
            std::fwrite(both.data(), sizeof(float), both.size(), output);
        }
    }
    if (output != nullptr) std::fclose(output);
    return 0;
}
