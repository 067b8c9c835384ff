// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Filling an image view with what a URL names.
#pragma once

#include <memory>
#include <string_view>

namespace platform {
class UIImageView;
}

namespace tonewright {

/// Reads and decodes the image at `URLAddress` on the main queue, which waits for it, at most 60 s without
/// any progress, and let `view` show it if it still exists by then. What cannot be read or decoded leaves the
/// view as it was. Any thread; the log follows the steps.
void loadFrom(const std::shared_ptr<platform::UIImageView>& view, std::string_view URLAddress);

/// Have the image at `imageURLString` fetched in the background, and `view` kept until it came and shown it:
/// whatever an HTTP server answers, no image at all when the answer holds none. A fetch that fails leaves the
/// view as it was. Main thread.
void getImageFromURLString(const std::shared_ptr<platform::UIImageView>& view,
                           std::string_view imageURLString);

} // namespace tonewright
