// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/detail/dialogWindow.hpp"

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/ui/UIView.private.hpp"

namespace platform {

GtkWindow* windowOf(UIViewController& presenter) {
    const auto view = presenter.view();
    GtkRoot* root = view ? gtk_widget_get_root(widgetOf(*view)) : nullptr;
    return root != nullptr && GTK_IS_WINDOW(root) ? GTK_WINDOW(root) : nullptr;
}

std::string showableText(std::string_view text) {
    char* valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
    std::string showable = valid;
    g_free(valid);
    return showable;
}

void callLater(std::function<void()> completion) {
    if (completion) DispatchQueue::main().async(std::move(completion));
}

} // namespace platform
