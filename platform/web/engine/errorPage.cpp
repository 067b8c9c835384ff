// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/web/engine/errorPage.hpp"

#include <glib.h>

namespace platform {
namespace {

constexpr std::size_t LongestPlace = 200; // bytes; longer URIs are cut off

constexpr const char* Head = R"(<!DOCTYPE html><html><head><meta charset="utf-8"><style>
:root { color-scheme: light dark; }
body { font: 16px/1.5 system-ui, sans-serif; max-width: 32em; margin: 18vh auto; padding: 0 1.5em; }
h1 { font-size: 1.4em; font-weight: 500; margin: 0 0 .5em; }
p { margin: 0 0 .75em; overflow-wrap: anywhere; }
.place { opacity: .7; }
</style><title>)";

std::string escaped(const std::string& text) {
    char* valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
    char* markup = g_markup_escape_text(valid, -1);
    std::string result = markup;
    g_free(markup);
    g_free(valid);
    return result;
}

} // namespace

std::string errorPage(const std::string& title, const std::string& sentence, const std::string& uri) {
    const std::string place = uri.size() <= LongestPlace ? uri : uri.substr(0, LongestPlace) + "...";
    return Head + escaped(title) + "</title></head><body><h1>" + escaped(title) + "</h1><p>" +
           escaped(sentence) + "</p><p class=\"place\">" + escaped(place) + "</p></body></html>";
}

} // namespace platform
