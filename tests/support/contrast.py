# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""The contrast of colours as WCAG 2 defines it."""
import numpy


def contrast(one, other) -> numpy.ndarray:
    """Return the contrast ratio, from 1 to 21, of colours (..., 3) with components from 0 to 255."""
    def luminance(colours) -> numpy.ndarray:
        parts = numpy.asarray(colours) / 255
        parts = numpy.where(parts <= 0.04045, parts / 12.92, ((parts + 0.055) / 1.055) ** 2.4)
        return parts @ (0.2126, 0.7152, 0.0722) + 0.05

    one, other = luminance(one), luminance(other)
    return numpy.maximum(one, other) / numpy.minimum(one, other)
