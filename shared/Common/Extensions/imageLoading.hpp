// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Loads images from URLs into image views.
#pragma once

#include <memory>
#include <string_view>

namespace platform {
class UIImageView;
}

namespace tonewright {

/// Reads and decodes the image at `URLAddress` on the main queue and shows it in `view`, if the view still
/// exists by then. The main queue is blocked meanwhile; reading fails after 60 seconds without progress. If
/// the image cannot be read or decoded, the view does not change. Any thread; each step is printed.
void loadFrom(const std::shared_ptr<platform::UIImageView>& view, std::string_view URLAddress);

/// Fetches the image at `imageURLString` in the background and shows it in `view`, which is kept alive until
/// then. The content is used whatever the HTTP status is; if it is not an image, the view shows none. If
/// fetching fails, the view does not change. Main thread.
void getImageFromURLString(const std::shared_ptr<platform::UIImageView>& view,
                           std::string_view imageURLString);

} // namespace tonewright
