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
    /// The largest number of pixels. Larger pictures are refused when their header says so, before memory of
    /// that size is allocated.
    static constexpr std::int64_t MostPixels = std::int64_t{64} << 20U;

    /// Returns the picture in `data`: PNG, JPEG, GIF (its first frame), BMP, TIFF, ICO (its largest picture),
    /// and WebP and SVG if the system has a decoder for them, whatever type a server states. Null for bytes
    /// that are not a picture, one that is truncated, one whose decoder finds damage, and one that is too
    /// large or takes too long. Blocks: as long as the pixels of a PNG, JPEG or BMP take; the others, and
    /// unusual ones of these, are decoded by a process with two seconds of processor time.
    [[nodiscard]] static std::shared_ptr<UIImage> initWithData(std::span<const std::byte> data);
    ~UIImage();
    UIImage(const UIImage&) = delete;
    UIImage& operator=(const UIImage&) = delete;

    /// Returns the size in points, the right way up.
    [[nodiscard]] CGSize size() const noexcept;

    /// The toolkit's side of an image.
    class Implementation;
    [[nodiscard]] Implementation& implementation() const noexcept { return *_implementation; }

  private:
    explicit UIImage(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> _implementation;
};

} // namespace platform
