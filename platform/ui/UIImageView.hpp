// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A view that shows an image as large as fits, with its aspect ratio kept. Main thread, except `image` and
// `setImage`.
#pragma once

#include "platform/ui/UIImage.hpp"
#include "platform/ui/UIView.hpp"

#include <memory>
#include <mutex>

namespace platform {

class UIImageView final : public UIView {
  public:
    /// Creates a view that shows nothing yet.
    UIImageView();
    /// Creates the view for a widget of an interface description.
    explicit UIImageView(ImplementationPointer implementation);

    /// Returns the image that was set last, or null. Any thread.
    [[nodiscard]] std::shared_ptr<UIImage> image() const;
    /// Sets the image; null shows nothing. Any thread; a task on the main queue updates the screen.
    void setImage(std::shared_ptr<UIImage> image);

  private:
    void show();

    mutable std::mutex _mutex;
    std::shared_ptr<UIImage> _image; // guarded by _mutex, held only for a copy or an assignment
};

} // namespace platform
