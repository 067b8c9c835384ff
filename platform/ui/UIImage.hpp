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
    /// What a picture may have at most. Larger ones are refused when their header says so, before anything of
    /// that size is taken.
    static constexpr std::int64_t MostPixels = std::int64_t{64} << 20U;

    /// Decode a picture: PNG, JPEG, GIF (its first frame), BMP, TIFF, ICO, and WebP and SVG where the system
    /// has a decoder for them, whatever a server calls it. Bytes that are none, damaged ones, and a picture
    /// that is too large give none. Takes as long as the picture has pixels.
    [[nodiscard]] static std::shared_ptr<UIImage> initWithData(std::span<const std::byte> data);
    ~UIImage();
    UIImage(const UIImage&) = delete;
    UIImage& operator=(const UIImage&) = delete;

    /// Give the size in points, the right way up.
    [[nodiscard]] CGSize size() const noexcept;

    /// The toolkit's side of an image.
    class Implementation;
    [[nodiscard]] Implementation& implementation() const noexcept { return *_implementation; }

  private:
    explicit UIImage(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> _implementation;
};

} // namespace platform
