// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIButton.hpp"

#include "platform/ui/detail/ViewImplementation.hpp"
#include "platform/ui/detail/viewWidget.hpp"
#include "platform/ui/toolkit/buttonKeys.hpp"

namespace platform {

UIButton::UIButton(const std::string& title)
    : UIButton(std::make_unique<Implementation>(gtk_button_new_with_mnemonic(title.c_str()))) {}

UIButton::UIButton(std::unique_ptr<Implementation> implementation)
    : UIView(std::move(implementation)) {
    pressAtOnce(GTK_BUTTON(widgetOf(*this)));
}

bool UIButton::isEnabled() const {
    return gtk_widget_get_sensitive(widgetOf(*this)) != FALSE;
}

void UIButton::setEnabled(bool enabled) {
    gtk_widget_set_sensitive(widgetOf(*this), enabled ? TRUE : FALSE);
}

void UIButton::press() {
    g_signal_emit_by_name(widgetOf(*this), "clicked");
}

} // namespace platform
