// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/detail/imageTexture.hpp"
#include "platform/ui/images/imageDecoding.hpp"

namespace platform {

class UIImage::Implementation {
  public:
    explicit Implementation(GdkTexture* ownTexture)
        : texture(GObjectRef<GdkTexture>::adopt(ownTexture)) {}
    GObjectRef<GdkTexture> texture;
};

namespace {

// Uses the decoder's memory without copying it.
GdkTexture* makeTexture(GObjectRef<GdkPixbuf> pixels) {
    GdkPixbuf* pixbuf = pixels.get();
    const auto stride = static_cast<gsize>(gdk_pixbuf_get_rowstride(pixbuf));
    const gsize size = gdk_pixbuf_get_byte_length(pixbuf);
    GBytes* bytes = g_bytes_new_with_free_func(gdk_pixbuf_read_pixels(pixbuf), size, g_object_unref,
                                               g_object_ref(pixbuf));
    GdkTexture* texture = gdk_memory_texture_new(
        gdk_pixbuf_get_width(pixbuf), gdk_pixbuf_get_height(pixbuf),
        gdk_pixbuf_get_has_alpha(pixbuf) != FALSE ? GDK_MEMORY_R8G8B8A8 : GDK_MEMORY_R8G8B8, bytes, stride);
    g_bytes_unref(bytes);
    return texture;
}

} // namespace

GdkTexture* textureOf(const UIImage& image) noexcept {
    return image.implementation().texture.get();
}

UIImage::UIImage(std::unique_ptr<Implementation> implementation)
    : _implementation(std::move(implementation)) {}
UIImage::~UIImage() = default;

std::shared_ptr<UIImage> UIImage::initWithData(std::span<const std::byte> data) {
    auto pixels = decodeImage(data, MostPixels);
    if (!pixels) return nullptr;
    return std::shared_ptr<UIImage>(
        new UIImage(std::make_unique<Implementation>(makeTexture(std::move(pixels)))));
}

CGSize UIImage::size() const noexcept {
    return {static_cast<double>(gdk_texture_get_width(textureOf(*this))),
            static_cast<double>(gdk_texture_get_height(textureOf(*this)))};
}

} // namespace platform
