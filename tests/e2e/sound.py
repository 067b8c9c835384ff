# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""What is heard: recording the test's sink, reading and writing files, and comparing sounds."""
import pathlib
import signal
import subprocess
import time

import numpy


class Recording:
    """Everything the sink plays from here to stop(), 32-bit float at the sink's rate."""

    def __init__(self, path: pathlib.Path, rate: int = 48000, channels: int = 2):
        self.path, self.channels = path, channels
        path.unlink(missing_ok=True)  # what an earlier recording left there is no sign that this one runs
        self._process = subprocess.Popen(
            ["pw-record", "--format", "f32", "--rate", str(rate), "--channels", str(channels),
             "--latency", f"1024/{rate}", "-P", "{ stream.capture.sink=true node.name=e2e-recording }",
             "--target", "tonewright-sink", str(path)],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        end = time.monotonic() + 15
        while time.monotonic() < end:  # the header is there when the stream runs
            if path.exists() and path.stat().st_size > 4096:
                return
            time.sleep(0.02)
        raise AssertionError("nothing could be recorded from the sink")

    def stop(self) -> numpy.ndarray:
        self._process.send_signal(signal.SIGINT)
        self._process.wait(10)
        return read_wav(self.path)


def read_wav(path: pathlib.Path) -> numpy.ndarray:
    """Give the samples (frames, channels) of a float or 16-bit WAV file, also of one whose header was not finished."""
    data = path.read_bytes()
    place, channels, width = 12, 2, 4
    while place + 8 <= len(data):
        name, size = data[place:place + 4], int.from_bytes(data[place + 4:place + 8], "little")
        if name == b"fmt ":
            channels = int.from_bytes(data[place + 10:place + 12], "little")
            width = int.from_bytes(data[place + 22:place + 24], "little") // 8
        if name == b"data":
            body = data[place + 8:place + 8 + size] if 0 < size < 0xFFFF0000 else data[place + 8:]
            body = body[:len(body) // (width * channels) * width * channels]
            if width == 4:
                return numpy.frombuffer(body, "<f4").reshape(-1, channels).astype(numpy.float64)
            return numpy.frombuffer(body, "<i2").reshape(-1, channels) / 32768.0
        place += 8 + size + size % 2
    raise AssertionError(f"{path} holds no sound")


def write_wav(path: pathlib.Path, samples: numpy.ndarray, rate: int) -> pathlib.Path:
    """Write float samples (frames, channels)."""
    body = samples.astype("<f4").tobytes()
    channels = samples.shape[1]
    head = b"WAVEfmt " + b"".join(number.to_bytes(size, "little") for number, size in [
        (16, 4), (3, 2), (channels, 2), (rate, 4), (rate * channels * 4, 4), (channels * 4, 2), (32, 2)])
    path.write_bytes(b"RIFF" + (len(head) + 8 + len(body)).to_bytes(4, "little") + head
                     + b"data" + len(body).to_bytes(4, "little") + body)
    return path


def convert(source: pathlib.Path, out: pathlib.Path, *options: str) -> numpy.ndarray:
    """Give a file's sound, decoded and converted by a program that is not ours."""
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-i", str(source), *options, "-c:a", "pcm_f32le", str(out)],
                   check=True, stdin=subprocess.DEVNULL)
    return read_wav(out)


def passes(path: pathlib.Path, count: int, rate: int, work: pathlib.Path) -> tuple[numpy.ndarray, int]:
    """Give a loop's stereo sound `count` times over at `rate`, and the frames of one pass at that rate."""
    about = subprocess.run(["ffprobe", "-v", "error", "-show_entries", "stream=sample_rate,duration", "-of",
                            "default=nw=1:nk=1", str(path)], capture_output=True, text=True, check=True).stdout.split()
    own_rate, seconds = int(about[0]), float(about[1])
    # A decoder gives whole codec frames; the file says where the sound ends.
    once = convert(path, work / "once.wav", "-ac", "2")[:round(seconds * own_rate)]
    often = write_wav(work / "often.wav", numpy.tile(once, (count, 1)), own_rate)
    return convert(often, work / "converted.wav", "-ar", str(rate)), round(seconds * rate)


def loudness(samples: numpy.ndarray) -> float:
    """Give the level in dB below full scale (-200 for silence)."""
    return 20 * numpy.log10(max(1e-10, float(numpy.sqrt(numpy.mean(numpy.square(samples))))) if samples.size else 1e-10)


def best_place(heard: numpy.ndarray, wanted: numpy.ndarray) -> tuple[int, float]:
    """Find where `heard` (mono) lies in `wanted` (mono, longer): its first frame there and the correlation, -1 to 1."""
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
    """Look for `heard`, piece by piece from its first sound on, where it should be in `wanted`, within half a second of
    where the piece before it was; yield for each its place there and the likeness, as best_place does."""
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
