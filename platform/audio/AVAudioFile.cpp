// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/audio/AVAudioFile.hpp"

#include "platform/audio/detail/AudioReader.hpp"

namespace platform {

Result<std::shared_ptr<AVAudioFile>> AVAudioFile::open(const URL& url) {
    if (!url.isFileURL()) {
        return Error("AVAudioFile", -1,
                     "The sound at " + url.absoluteString() + " couldn't be opened because it isn't a file.");
    }
    auto reader = AudioReader::open(url.path());
    if (!reader) return reader.error();
    return std::shared_ptr<AVAudioFile>(new AVAudioFile(url, std::move(reader.value())));
}

AVAudioFile::AVAudioFile(URL url, std::unique_ptr<AudioReader> reader)
    : _url(std::move(url))
    , _format(reader->format())
    , _lengthFrames(reader->lengthFrames())
    , _spare(std::move(reader)) {}

AVAudioFile::~AVAudioFile() = default;

Result<std::unique_ptr<AudioReader>> AVAudioFile::takeReader() const {
    {
        const std::scoped_lock lock(_mutex);
        if (_spare) return std::move(_spare);
    }
    auto reader = AudioReader::open(_url.path());
    if (reader && reader.value()->format() != _format) {
        return Error("AVAudioFile", -1,
                     "The file \"" + _url.lastPathComponent() + "\" has changed since it was opened.");
    }
    return reader;
}

void AVAudioFile::returnReader(std::unique_ptr<AudioReader> reader) const {
    if (!reader || !reader->rewind()) return;
    const std::scoped_lock lock(_mutex);
    _spare = std::move(reader);
}

} // namespace platform
