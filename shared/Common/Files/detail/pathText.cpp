// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/detail/pathText.hpp"

namespace tonewright {
namespace {

std::string_view withoutTrailingSlashes(std::string_view path) noexcept {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    return path;
}

} // namespace

std::string_view lastComponent(std::string_view path) noexcept {
    path = withoutTrailingSlashes(path);
    if (path == "/") return path;
    return path.substr(path.rfind('/') + 1);
}

std::string_view withoutLastComponent(std::string_view path) noexcept {
    path = withoutTrailingSlashes(path);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) return {};
    return withoutTrailingSlashes(path.substr(0, slash == 0 ? 1 : slash));
}

std::string_view extensionOf(std::string_view path) noexcept {
    const std::string_view name = lastComponent(path);
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
}

} // namespace tonewright
