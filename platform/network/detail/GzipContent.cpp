// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/network/detail/GzipContent.hpp"

#include "platform/network/detail/Transfer.hpp"

#include <gio/gio.h>

namespace platform {

GzipContent::GzipContent()
    : _converter(G_CONVERTER(g_zlib_decompressor_new(G_ZLIB_COMPRESSOR_FORMAT_GZIP))) {}

GzipContent::~GzipContent() {
    g_object_unref(_converter);
}

std::optional<Error> GzipContent::unpack(std::span<const std::byte> bytes, const Append& append) {
    bool isPending = false; // the output was full, so more may follow
    while (!bytes.empty() || isPending) {
        if (!_isInside && _hasEnded && bytes.front() == std::byte{0}) { // zero padding after a stream
            bytes = bytes.subspan(1);
            continue;
        }
        gsize taken = 0;
        gsize given = 0;
        GError* failure = nullptr;
        const GConverterResult result =
            g_converter_convert(_converter, bytes.data(), bytes.size(), _unpacked.data(), _unpacked.size(),
                                G_CONVERTER_NO_FLAGS, &taken, &given, &failure);
        const std::unique_ptr<GError, decltype(&g_error_free)> owner(failure, &g_error_free);
        if (result == G_CONVERTER_ERROR) {
            if (g_error_matches(failure, G_IO_ERROR, G_IO_ERROR_PARTIAL_INPUT)) return std::nullopt;
            return transferError(TransferFailure::Failed,
                                 std::string("The transfer failed (") + failure->message + ").");
        }
        bytes = bytes.subspan(taken);
        if (auto failed = append({_unpacked.data(), given})) return failed;
        isPending = given == _unpacked.size();
        _isInside = result != G_CONVERTER_FINISHED;
        if (_isInside) continue;
        _hasEnded = true;
        isPending = false;
        g_converter_reset(_converter);
    }
    return std::nullopt;
}

} // namespace platform
