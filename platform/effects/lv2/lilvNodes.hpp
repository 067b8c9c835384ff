// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Functions that read the values of lilv nodes. The mutex of the node's world must be locked.
#pragma once

#include <algorithm>
#include <cmath>
#include <lilv/lilv.h>
#include <string>
#include <vector>

namespace platform::lv2 {

/// Returns the text of `node`, or an empty string for null.
[[nodiscard]] inline std::string textOf(const LilvNode* node) {
    if (node == nullptr) return {};
    const char* text = lilv_node_as_string(node);
    return text == nullptr ? std::string() : std::string(text);
}

/// Returns the texts of `nodes`, sorted.
[[nodiscard]] inline std::vector<std::string> textsOf(const LilvNodes* nodes) {
    std::vector<std::string> texts;
    LILV_FOREACH(nodes, i, nodes) texts.push_back(textOf(lilv_nodes_get(nodes, i)));
    std::sort(texts.begin(), texts.end());
    return texts;
}

/// Returns the path of the file URI `node`, or an empty string if `node` is not a file URI.
[[nodiscard]] inline std::string pathOf(const LilvNode* node) {
    char* path = node == nullptr ? nullptr : lilv_node_get_path(node, nullptr);
    std::string text = path == nullptr ? std::string() : std::string(path);
    lilv_free(path);
    return text;
}

/// Returns whether `node` is a finite number.
[[nodiscard]] inline bool isNumber(const LilvNode* node) {
    return node != nullptr && (lilv_node_is_float(node) || lilv_node_is_int(node)) &&
           std::isfinite(lilv_node_as_float(node));
}

} // namespace platform::lv2
