# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The smallest LV2 host: what an effect does to a sound, found without any code of the program under test."""
import ctypes
import os
import re
import subprocess

import numpy

_MAP = ctypes.CFUNCTYPE(ctypes.c_uint32, ctypes.c_void_p, ctypes.c_char_p)
_UNMAP = ctypes.CFUNCTYPE(ctypes.c_void_p, ctypes.c_void_p, ctypes.c_uint32)
_INSTANTIATE = ctypes.CFUNCTYPE(ctypes.c_void_p, ctypes.c_void_p, ctypes.c_double, ctypes.c_char_p, ctypes.c_void_p)
_CONNECT = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_uint32, ctypes.c_void_p)
_PLAIN = ctypes.CFUNCTYPE(None, ctypes.c_void_p)
_RUN = ctypes.CFUNCTYPE(None, ctypes.c_void_p, ctypes.c_uint32)


class _Feature(ctypes.Structure):
    _fields_ = [("uri", ctypes.c_char_p), ("data", ctypes.c_void_p)]


class _Mapping(ctypes.Structure):  # LV2_URID_Map and LV2_URID_Unmap alike: a handle and one function
    _fields_ = [("handle", ctypes.c_void_p), ("function", ctypes.c_void_p)]


class _Option(ctypes.Structure):
    _fields_ = [("context", ctypes.c_int), ("subject", ctypes.c_uint32), ("key", ctypes.c_uint32),
                ("size", ctypes.c_uint32), ("type", ctypes.c_uint32), ("value", ctypes.c_void_p)]


class _Descriptor(ctypes.Structure):
    _fields_ = [("uri", ctypes.c_char_p), ("instantiate", _INSTANTIATE), ("connect_port", _CONNECT),
                ("activate", ctypes.c_void_p), ("run", _RUN), ("deactivate", ctypes.c_void_p), ("cleanup", _PLAIN),
                ("extension_data", ctypes.c_void_p)]


class _Uris:
    def __init__(self):
        self.known: dict[bytes, int] = {}
        self.map_function = _MAP(lambda _, uri: self.map(uri))
        self.unmap_function = _UNMAP(lambda _, number: self.unmap(number))

    def map(self, uri: bytes) -> int:
        return self.known.setdefault(uri, len(self.known) + 1)

    def unmap(self, number: int):
        return next((ctypes.cast(ctypes.c_char_p(uri), ctypes.c_void_p).value
                     for uri, known in self.known.items() if known == number), None)


def render(uri: str, sound: numpy.ndarray, rate: int, block: int = 1024, lv2_path: str | None = None) -> numpy.ndarray:
    """Give what the effect `uri`, with its default settings, makes of `sound` (frames, channels)."""
    environment = dict(os.environ, **({"LV2_PATH": lv2_path} if lv2_path else {}))
    about = subprocess.run(["lv2info", uri], capture_output=True, text=True, check=True, env=environment).stdout
    ports = re.split(r"\n\tPort \d+:\n", about)
    binary = re.search(r"^\tBinary:\s+file://(\S+)", ports[0], re.M).group(1)
    bundle = re.search(r"^\tBundle:\s+file://(\S+)", ports[0], re.M).group(1)

    library = ctypes.CDLL(binary)
    library.lv2_descriptor.restype, library.lv2_descriptor.argtypes = ctypes.POINTER(_Descriptor), [ctypes.c_uint32]
    index = 0
    while (found := library.lv2_descriptor(index)) and found.contents.uri != uri.encode():
        index += 1
    plugin = found.contents

    uris = _Uris()
    mapping = _Mapping(None, ctypes.cast(uris.map_function, ctypes.c_void_p))
    unmapping = _Mapping(None, ctypes.cast(uris.unmap_function, ctypes.c_void_p))
    numbers = [ctypes.c_int32(block), ctypes.c_int32(block), ctypes.c_int32(65536)]
    keys = [b"http://lv2plug.in/ns/ext/buf-size#minBlockLength", b"http://lv2plug.in/ns/ext/buf-size#maxBlockLength",
            b"http://lv2plug.in/ns/ext/buf-size#sequenceSize"]
    options = (_Option * 4)(*[_Option(0, 0, uris.map(key), 4, uris.map(b"http://lv2plug.in/ns/ext/atom#Int"),
                                      ctypes.addressof(number)) for key, number in zip(keys, numbers)])
    offered = [(b"http://lv2plug.in/ns/ext/urid#map", ctypes.addressof(mapping)),
               (b"http://lv2plug.in/ns/ext/urid#unmap", ctypes.addressof(unmapping)),
               (b"http://lv2plug.in/ns/ext/options#options", ctypes.addressof(options)),
               (b"http://lv2plug.in/ns/ext/buf-size#boundedBlockLength", None)]
    features = [_Feature(name, data) for name, data in offered]
    pointers = (ctypes.c_void_p * (len(features) + 1))(*[ctypes.addressof(feature) for feature in features], None)
    instance = plugin.instantiate(ctypes.addressof(plugin), rate, bundle.encode(), ctypes.addressof(pointers))
    if not instance:
        raise AssertionError(f"{uri} could not be instantiated")

    inputs, outputs, atoms, controls = [], [], [], []
    for number, port in enumerate(ports[1:]):
        if "#AudioPort" in port:
            planes = inputs if "#InputPort" in port else outputs
            planes.append(numpy.zeros(block, numpy.float32))
            plugin.connect_port(instance, number, planes[-1].ctypes.data)
        elif "#ControlPort" in port:
            default = re.search(r"Default:\s+(\S+)", port)
            controls.append(ctypes.c_float(float(default.group(1)) if default else 0.0))
            plugin.connect_port(instance, number, ctypes.addressof(controls[-1]))
        else:
            atoms.append((numpy.zeros(65536, numpy.uint8), "#InputPort" in port))
            plugin.connect_port(instance, number, atoms[-1][0].ctypes.data)
    if plugin.activate:
        _PLAIN(plugin.activate)(instance)

    rendered = numpy.zeros((len(sound), len(outputs)))
    for start in range(0, len(sound), block):
        length = min(block, len(sound) - start)
        for channel, plane in enumerate(inputs):
            plane[:length] = sound[start:start + length, min(channel, sound.shape[1] - 1)]
        for buffer, is_input in atoms:  # an empty sequence in; room for one out
            buffer.view(numpy.uint32)[:4] = (8 if is_input else 65528, uris.map(
                b"http://lv2plug.in/ns/ext/atom#Sequence" if is_input else b"http://lv2plug.in/ns/ext/atom#Chunk"), 0, 0)
        plugin.run(instance, length)
        for channel, plane in enumerate(outputs):
            rendered[start:start + length, channel] = plane[:length]
    if plugin.deactivate:
        _PLAIN(plugin.deactivate)(instance)
    plugin.cleanup(instance)
    return rendered
