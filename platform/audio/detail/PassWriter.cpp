// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/detail/PassWriter.hpp"

#include "platform/audio/AVAudioFile.hpp"
#include "platform/audio/detail/mapChannels.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <utility>

namespace platform {

void PassWriter::begin(const std::shared_ptr<AVAudioFile>& file, std::int64_t silentFrames,
                       const AVAudioFormat& ringFormat) {
    _file = file;
    _ringFormat = ringFormat;
    auto reader = file->takeReader();
    if (reader) {
        _reader = std::move(reader.value());
        _silentFrames = silentFrames;
    } else {
        // The file was deleted or changed since it was opened. It is replaced by silence of the same length.
        warn(reader.error().localizedDescription());
        _silentFrames = silentFrames + file->lengthFrames();
    }
    const AVAudioFormat format = file->processingFormat();
    if (format.sampleRate != ringFormat.sampleRate) {
        _silentFrames = static_cast<std::int64_t>(static_cast<double>(_silentFrames) * ringFormat.sampleRate /
                                                  format.sampleRate);
    }
    _tailFrames = _converter && format != _from ? _converter->tailFrames() : 0;
}

PassWriter::Step PassWriter::write(FrameRing& ring) {
    if (_taken < _held) return writeConverted(ring);
    if (_tailFrames > 0) return flush();
    if (_silentFrames > 0) return writeSilence(ring);
    if (!_reader || _reader->isAtEnd()) return finish();
    return _file->processingFormat() == _ringFormat ? writeDirectly(ring) : convert();
}

void PassWriter::abandon() {
    if (_file) _file->returnReader(std::move(_reader));
    _file.reset();
    _from = {};
    _converter.reset();
    _held = _taken = 0;
}

PassWriter::Step PassWriter::finish() {
    _file->returnReader(std::move(_reader));
    _file.reset();
    return Step::Finished;
}

PassWriter::Step PassWriter::writeSilence(FrameRing& ring) {
    const auto frames = static_cast<std::uint32_t>(std::min<std::int64_t>(ring.writable(), _silentFrames));
    if (frames == 0) return Step::Full;
    fillWithSilence(ring.space().first(frames));
    ring.commit(frames);
    _silentFrames -= frames;
    return Step::Wrote;
}

PassWriter::Step PassWriter::writeDirectly(FrameRing& ring) {
    if (ring.writable() == 0) return Step::Full;
    const std::uint32_t frames = _reader->read(ring.space());
    ring.commit(frames);
    return frames == 0 || _reader->isAtEnd() ? finish() : Step::Wrote;
}

void PassWriter::prepareConversion() {
    _from = _file->processingFormat();
    _converter.reset();
    if (_from.sampleRate != _ringFormat.sampleRate) {
        _converter =
            std::make_unique<RateConverter>(_from.sampleRate, _ringFormat.sampleRate, _from.channelCount);
    }
    const std::uint32_t chunk = RateConverter::ChunkFrames;
    const std::uint32_t bound = _converter ? _converter->outputBound(chunk) : chunk;
    _read.resize(_from.channelCount, chunk);
    _converted.resize(_from.channelCount, bound);
    _mapped.resize(_ringFormat.channelCount, bound);
}

void PassWriter::convertChunk(ConstPlanarSound chunk) {
    _taken = 0;
    _held = chunk.frames();
    if (_converter) {
        _held = _converter->push(chunk, _converted.view().first(_converter->outputBound(chunk.frames())));
        chunk = _converted.view();
    }
    mapChannels(chunk, _mapped.view().first(_held));
}

PassWriter::Step PassWriter::convert() {
    if (_from != _file->processingFormat()) prepareConversion();
    const std::uint32_t read = _reader->read(_read.view());
    if (read == 0) return finish();
    convertChunk(_read.view().first(read));
    return Step::Wrote;
}

// Before a pass in a different format, writes the frames of the previous pass that are still in the
// converter.
PassWriter::Step PassWriter::flush() {
    const std::uint32_t frames = std::min(_tailFrames, RateConverter::ChunkFrames);
    fillWithSilence(_read.view().first(frames));
    convertChunk(_read.view().first(frames));
    _tailFrames -= frames;
    if (_tailFrames == 0) {
        _converter.reset();
        _from = {};
    }
    return Step::Wrote;
}

PassWriter::Step PassWriter::writeConverted(FrameRing& ring) {
    const std::uint32_t frames = std::min(ring.writable(), _held - _taken);
    if (frames == 0) return Step::Full;
    const PlanarSound from = _mapped.view().after(_taken);
    const PlanarSound space = ring.space();
    for (std::uint32_t c = 0; c < ring.channels(); ++c) std::copy_n(from[c], frames, space[c]);
    ring.commit(frames);
    _taken += frames;
    return _taken == _held && _tailFrames == 0 && _reader && _reader->isAtEnd() ? finish() : Step::Wrote;
}

} // namespace platform
