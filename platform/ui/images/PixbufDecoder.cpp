// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/images/PixbufDecoder.hpp"

namespace platform {

PixbufDecoder::PixbufDecoder(const char* format, std::int64_t mostPixels)
    : _loader(GObjectRef<GdkPixbufLoader>::adopt(gdk_pixbuf_loader_new_with_type(format, nullptr)))
    , _mostPixels(mostPixels)
    , _isOpen(static_cast<bool>(_loader)) {
    if (_loader) g_signal_connect(_loader.get(), "size-prepared", G_CALLBACK(&PixbufDecoder::onSize), this);
}

PixbufDecoder::~PixbufDecoder() {
    (void)close();
}

void PixbufDecoder::onSize(GdkPixbufLoader* loader, int width, int height, gpointer data) {
    auto* decoder = static_cast<PixbufDecoder*>(data);
    if (width > 0 && height > 0 && height <= decoder->_mostPixels / width) return;
    decoder->_isRefused = true;
    gdk_pixbuf_loader_set_size(loader, 0, 0); // tells gdk-pixbuf to stop decoding
}

bool PixbufDecoder::append(std::span<const std::byte> piece) {
    if (!_isOpen || _isRefused) return false;
    return gdk_pixbuf_loader_write(_loader.get(), reinterpret_cast<const guchar*>(piece.data()), piece.size(),
                                   nullptr) != FALSE &&
           !_isRefused;
}

// A loader must always be closed. Some decoders do all their work in this call.
bool PixbufDecoder::close() {
    if (!_isOpen) return false;
    _isOpen = false;
    return gdk_pixbuf_loader_close(_loader.get(), nullptr) != FALSE;
}

GObjectRef<GdkPixbuf> PixbufDecoder::finish() {
    if (!close() || _isRefused) return {};
    GdkPixbuf* pixels = gdk_pixbuf_loader_get_pixbuf(_loader.get());
    return GObjectRef<GdkPixbuf>::adopt(pixels == nullptr ? nullptr
                                                          : gdk_pixbuf_apply_embedded_orientation(pixels));
}

} // namespace platform
