// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UILabel.hpp"

#include "platform/ui/detail/ViewImplementation.hpp"
#include "platform/ui/detail/viewWidget.hpp"

namespace platform {

UILabel::UILabel(const std::string& text)
    : UILabel(std::make_unique<Implementation>(gtk_label_new(text.c_str()))) {}

UILabel::UILabel(std::unique_ptr<Implementation> implementation)
    : UIView(std::move(implementation)) {}

std::string UILabel::text() const {
    return gtk_label_get_text(GTK_LABEL(widgetOf(*this)));
}

void UILabel::setText(const std::string& text) {
    gtk_label_set_label(GTK_LABEL(widgetOf(*this)), text.c_str());
}

} // namespace platform
