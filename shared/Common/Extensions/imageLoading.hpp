// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Loads the image that a URL names into an image view.
#pragma once

#include <memory>
#include <string_view>

namespace platform {
class UIImageView;
}

namespace tonewright {

/// Reads and decodes the image at `URLAddress` on the main queue, which is blocked meanwhile, at most 60 s
/// without any progress, and sets it in `view` if that still exists by then. If it cannot be read or decoded,
/// the view stays as it was. Any thread; each step is logged.
void loadFrom(const std::shared_ptr<platform::UIImageView>& view, std::string_view URLAddress);

/// Fetches the image at `imageURLString` in the background and sets it in `view`, which is kept alive until
/// then. Whatever an HTTP server answers is used: if the answer holds no image, the view shows none. A fetch
/// that fails leaves the view as it was. Main thread.
void getImageFromURLString(const std::shared_ptr<platform::UIImageView>& view,
                           std::string_view imageURLString);

} // namespace tonewright
