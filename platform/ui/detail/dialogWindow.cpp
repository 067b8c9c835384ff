// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/detail/dialogWindow.hpp"

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/ui/widgets.hpp"

#include <gtk/gtk.h>
#include <memory>

namespace platform {

GtkWindow* windowOf(UIViewController& presenter) {
    const auto view = presenter.view();
    GtkRoot* root = view ? gtk_widget_get_root(widgetOf(*view)) : nullptr;
    return root != nullptr && GTK_IS_WINDOW(root) ? GTK_WINDOW(root) : nullptr;
}

std::string showableText(std::string_view text, std::size_t mostCharacters) {
    // Pango needs time quadratic in the length of a word to break it, so long words are split by line ends.
    constexpr std::size_t LongestWord = 200; // characters
    const std::unique_ptr<char, decltype(&g_free)> valid(
        g_utf8_make_valid(text.data(), static_cast<gssize>(text.size())), &g_free);
    std::string showable;
    std::size_t wordLength = 0;
    std::size_t left = mostCharacters;
    for (const char* at = valid.get(); *at != '\0'; at = g_utf8_next_char(at)) {
        if (left-- == 0) return showable + "…";
        wordLength = g_unichar_isspace(g_utf8_get_char(at)) != FALSE ? 0 : wordLength + 1;
        showable.append(at, static_cast<std::size_t>(g_utf8_next_char(at) - at));
        if (wordLength % LongestWord == LongestWord - 1) showable += '\n';
    }
    return showable;
}

void callLater(std::function<void()> completion) {
    if (completion) DispatchQueue::main().async(std::move(completion));
}

} // namespace platform
