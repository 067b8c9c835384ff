// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Creates the view of the right class for a widget.
#include "platform/foundation/console.hpp"
#include "platform/ui/UIButton.hpp"
#include "platform/ui/UIDrawingView.hpp"
#include "platform/ui/UIImageView.hpp"
#include "platform/ui/UILabel.hpp"
#include "platform/ui/UIWindow.hpp"
#include "platform/ui/classRegistry.hpp"
#include "platform/ui/detail/ViewImplementation.hpp"
#include "platform/ui/toolkit/ContainerWidget.hpp"
#include "platform/ui/toolkit/DrawingWidget.hpp"
#include "platform/ui/widgets.hpp"

#include <gtk/gtk.h>

namespace platform {
namespace {

class PlainView final : public UIView {
  public:
    explicit PlainView(ImplementationPointer implementation)
        : UIView(std::move(implementation)) {}
};

} // namespace

std::shared_ptr<UIView> viewWithWidget(GtkWidget* widget) {
    if (auto view = viewOfWidget(widget)) return view;
    auto implementation = makeImplementation(widget);
    if (isContainerWidget(widget) && !viewClassOf(widget).empty()) {
        if (auto view = makeView(viewClassOf(widget), implementation)) return view;
        warn("The view class \"" + viewClassOf(widget) + "\" is unknown.");
    }
    if (GTK_IS_BUTTON(widget)) return std::make_shared<UIButton>(std::move(implementation));
    if (GTK_IS_LABEL(widget)) return std::make_shared<UILabel>(std::move(implementation));
    if (isDrawingWidget(widget)) return std::make_shared<UIDrawingView>(std::move(implementation));
    if (GTK_IS_PICTURE(widget)) return std::make_shared<UIImageView>(std::move(implementation));
    if (GTK_IS_WINDOW(widget)) return std::make_shared<UIWindow>(std::move(implementation));
    return std::make_shared<PlainView>(std::move(implementation));
}

} // namespace platform
