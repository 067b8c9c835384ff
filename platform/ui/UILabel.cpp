// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UILabel.hpp"

#include "platform/ui/detail/ViewImplementation.hpp"
#include "platform/ui/widgets.hpp"

#include <gtk/gtk.h>

namespace platform {

UILabel::UILabel(const std::string& text)
    : UILabel(makeImplementation(gtk_label_new(text.c_str()))) {}

UILabel::UILabel(ImplementationPointer implementation)
    : UIView(std::move(implementation)) {}

std::string UILabel::text() const {
    return gtk_label_get_text(GTK_LABEL(widgetOf(*this)));
}

void UILabel::setText(const std::string& text) {
    gtk_label_set_label(GTK_LABEL(widgetOf(*this)), text.c_str());
}

} // namespace platform
