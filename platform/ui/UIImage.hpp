// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A picture in memory. Immutable; any thread.
#pragma once

#include "platform/ui/CGRect.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace platform {

class UIImage {
  public:
    /// The largest number of pixels. A larger picture is refused as soon as its header has been read, before
    /// memory for the pixels is allocated.
    static constexpr std::int64_t MostPixels = std::int64_t{64} << 20U;

    /// Returns the picture in `data`: PNG, JPEG, GIF (the first frame), BMP, TIFF, ICO (the largest picture),
    /// and WebP and SVG if the system has a decoder for them. The bytes alone decide the format, not the type
    /// that a server states. Returns null if `data` is not a picture, is truncated or damaged, has too many
    /// pixels or takes too long to decode. Blocks while decoding: ordinary PNG, JPEG and BMP files are
    /// decoded in the calling thread; all others are decoded by a process with two seconds of processor time.
    [[nodiscard]] static std::shared_ptr<UIImage> initWithData(std::span<const std::byte> data);
    ~UIImage();
    UIImage(const UIImage&) = delete;
    UIImage& operator=(const UIImage&) = delete;

    /// Returns the size in points, after the orientation stored in the file has been applied.
    [[nodiscard]] CGSize size() const noexcept;

    /// The GTK side of an image.
    class Implementation;
    [[nodiscard]] Implementation& implementation() const noexcept { return *_implementation; }

  private:
    explicit UIImage(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> _implementation;
};

} // namespace platform
