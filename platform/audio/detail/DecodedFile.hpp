// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// One sound file and its decoder (libavformat and libavcodec), decoded frame by frame. One thread at a time;
// never the audio thread.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/foundation/Error.hpp"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace platform {

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

struct DecodedFile {
    std::unique_ptr<AVFormatContext, CloseFormat> container;
    std::unique_ptr<AVCodecContext, FreeCodec> codec;
    std::unique_ptr<AVPacket, FreePacket> packet{av_packet_alloc()};
    std::unique_ptr<AVFrame, FreeFrame> frame{av_frame_alloc()};
    AVStream* stream = nullptr; // owned by the container
    std::string path;
    AVAudioFormat format;
    std::int64_t length = 0;
    bool lengthIsStated = false; // a pass then has exactly this length
    bool isMov = false;

    std::uint32_t frameOffset = 0; // frames of `frame` already returned
    std::uint32_t frameLength = 0; // frames in `frame`
    std::int64_t position = 0;     // frames returned in this pass
    std::int64_t silence = 0;      // frames of silence to return before `frame`
    bool draining = false;         // the end of the container was reached
    bool finished = false;         // the codec has returned its last frame
    bool resynchronise = false;    // data was lost: the next frame is placed by its time stamp
    bool saidDamaged = false;

    /// Opens the file at `path` and decodes its first frame, or returns the reason why that failed.
    [[nodiscard]] std::optional<Error> open();
    /// Decodes until `frame` contains frames to return, and sets `silence` to the gap before them. Returns
    /// false at the end.
    [[nodiscard]] bool decodeFrame();
    /// Reports on standard error, once for each file, that it is damaged.
    void reportDamage();

  private:
    [[nodiscard]] bool openCodec();
    void findLength();
    [[nodiscard]] bool acceptFrame();
    [[nodiscard]] std::int64_t scaled(std::int64_t time) const {
        return av_rescale_q(time, stream->time_base, AVRational{1, static_cast<int>(format.sampleRate)});
    }
};

} // namespace platform
