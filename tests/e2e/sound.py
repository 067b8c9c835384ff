# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Records the test's sink, reads and writes sound files, and compares sounds."""
import pathlib
import signal
import subprocess
import time

import numpy


class Recording:
    """Records what the sink plays until stop() is called, at 48 kHz."""

    def __init__(self, path: pathlib.Path):
        self.path = path
        path.unlink(missing_ok=True)  # an existing file would not show that the recording has started
        self._process = subprocess.Popen(
            ["pw-record", "--format", "f32", "--rate", "48000", "--channels", "2", "--latency", "1024/48000",
             "-P", "{ stream.capture.sink=true node.name=e2e-recording }", "--target", "tonewright-sink", str(path)],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        end = time.monotonic() + 15
        while time.monotonic() < end:  # the header is written when the stream runs
            if path.exists() and path.stat().st_size > 4096:
                return
            time.sleep(0.02)
        raise AssertionError("nothing could be recorded from the sink")

    def stop(self) -> numpy.ndarray:
        self._process.send_signal(signal.SIGINT)
        self._process.wait(10)
        return read(self.path)


def read(path: pathlib.Path, *options: str) -> numpy.ndarray:
    """Return a file's stereo samples (frames, 2), decoded and converted by ffmpeg."""
    raw = subprocess.run(["ffmpeg", "-v", "error", "-i", str(path), *options, "-ac", "2", "-f", "f32le", "-"],
                         check=True, capture_output=True, stdin=subprocess.DEVNULL).stdout
    return numpy.frombuffer(raw, "<f4").reshape(-1, 2).astype(numpy.float64)


def write_wav(path: pathlib.Path, samples: numpy.ndarray, rate: int) -> pathlib.Path:
    """Write samples (frames, channels) as a WAV file of floats; return the path."""
    body = samples.astype("<f4").tobytes()
    channels = samples.shape[1]
    head = b"WAVEfmt " + b"".join(number.to_bytes(size, "little") for number, size in [
        (16, 4), (3, 2), (channels, 2), (rate, 4), (rate * channels * 4, 4), (channels * 4, 2), (32, 2)])
    path.write_bytes(b"RIFF" + (len(head) + 8 + len(body)).to_bytes(4, "little") + head
                     + b"data" + len(body).to_bytes(4, "little") + body)
    return path


def passes(path: pathlib.Path, count: int, rate: int, work: pathlib.Path) -> tuple[numpy.ndarray, int]:
    """Return a loop's stereo sound at `rate`, repeated `count` times, and the number of frames per pass at that rate."""
    about = subprocess.run(["ffprobe", "-v", "error", "-show_entries", "stream=sample_rate,duration", "-of",
                            "default=nw=1:nk=1", str(path)], capture_output=True, text=True, check=True).stdout.split()
    own_rate, seconds = int(about[0]), float(about[1])
    # A decoder returns whole codec frames; the file's duration says where the sound ends.
    once = read(path)[:round(seconds * own_rate)]
    often = write_wav(work / "often.wav", numpy.tile(once, (count, 1)), own_rate)
    return read(often, "-ar", str(rate)), round(seconds * rate)


def loudness(samples: numpy.ndarray) -> float:
    """Return the level in dB below full scale (-200 for silence)."""
    return 20 * numpy.log10(max(1e-10, float(numpy.sqrt(numpy.mean(numpy.square(samples))))) if samples.size else 1e-10)


def best_place(heard: numpy.ndarray, wanted: numpy.ndarray) -> tuple[int, float]:
    """Find `heard` (mono) in `wanted` (mono, longer): return its first frame there and the correlation, -1 to 1."""
    size = 1 << (len(wanted) + len(heard) - 1).bit_length()
    product = numpy.fft.irfft(numpy.fft.rfft(wanted, size) * numpy.conj(numpy.fft.rfft(heard, size)), size)
    product = product[:len(wanted) - len(heard) + 1]
    energy = numpy.concatenate([[0.0], numpy.cumsum(numpy.square(wanted))])
    energy = energy[len(heard):] - energy[:len(wanted) - len(heard) + 1]
    score = product / numpy.sqrt(numpy.maximum(energy, 1e-12) * max(1e-12, float(numpy.sum(numpy.square(heard)))))
    place = int(numpy.argmax(score))
    return place, float(score[place])


PIECE = 6000  # frames


def pieces_found(heard: numpy.ndarray, wanted: numpy.ndarray):
    """Look for `heard` in `wanted`, piece by piece from the first sound on, each piece within half a second of the
    position that follows from the previous piece; yield each piece's position and correlation, as in best_place."""
    heard, wanted = heard.sum(axis=1), wanted.sum(axis=1)
    began = int(numpy.argmax(numpy.abs(heard) > 1e-4))
    shift = -began
    for start in range(began, len(heard) - PIECE, PIECE // 2):
        first = max(0, start + shift - 4 * PIECE)
        area = wanted[first:start + shift + 5 * PIECE]
        if start + shift + 5 * PIECE > len(wanted):
            return
        piece = heard[start:start + PIECE]
        if loudness(piece) < -70:
            continue
        place, likeness = best_place(piece, area)
        if likeness > 0.99:
            shift = first + place - start
        yield first + place, likeness
