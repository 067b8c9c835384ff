// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIImageView.hpp"

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/ui/detail/ViewImplementation.hpp"
#include "platform/ui/detail/imageTexture.hpp"
#include "platform/ui/widgets.hpp"

#include <gtk/gtk.h>

namespace platform {

UIImageView::UIImageView()
    : UIImageView(makeImplementation(gtk_picture_new())) {}

UIImageView::UIImageView(ImplementationPointer implementation)
    : UIView(std::move(implementation)) {}

std::shared_ptr<UIImage> UIImageView::image() const {
    const std::scoped_lock lock(_mutex);
    return _image;
}

void UIImageView::setImage(std::shared_ptr<UIImage> image) {
    {
        const std::scoped_lock lock(_mutex);
        _image.swap(image); // the previous image is released after the lock
    }
    DispatchQueue::main().async([place = std::weak_ptr<UIResponder>(weak_from_this())] {
        if (const auto view = std::static_pointer_cast<UIImageView>(place.lock())) view->show();
    });
}

void UIImageView::show() {
    const auto shown = image();
    gtk_picture_set_paintable(GTK_PICTURE(widgetOf(*this)),
                              shown ? GDK_PAINTABLE(textureOf(*shown)) : nullptr);
}

} // namespace platform
