// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A list that opens over the panel, with the presets or the values of a selector. It is drawn in the panel's
// own window and does not depend on a window manager.
#pragma once

#include "Geometry.hpp"

#include <cairo.h>

#include <optional>
#include <string>
#include <vector>

namespace tonewright::effect {

class Menu {
  public:
    /// Opens the menu below the control `owner`, or above or over it if there is not enough space.
    void open(const Rect& owner, const Rect& window, double unit, std::vector<std::string> items,
              std::optional<std::size_t> current);
    void close() noexcept { _items.clear(); }

    [[nodiscard]] bool isOpen() const noexcept { return !_items.empty(); }
    [[nodiscard]] const Rect& area() const noexcept { return _area; }
    [[nodiscard]] std::optional<std::size_t> itemAt(Point point) const noexcept;
    [[nodiscard]] std::optional<std::size_t> highlighted() const noexcept { return _highlighted; }

    /// Sets the highlighted item, and returns whether it has changed.
    bool highlight(std::optional<std::size_t> item) noexcept;
    /// Moves the highlight by `by` items, wrapping around at the ends.
    void move(int by) noexcept;

    void draw(cairo_t* context) const;

  private:
    [[nodiscard]] Rect itemArea(std::size_t item) const noexcept;

    std::vector<std::string> _items;
    std::optional<std::size_t> _current;
    std::optional<std::size_t> _highlighted;
    Rect _area;
    double _unit = 1.;
    double _rowHeight = 20.;
    std::size_t _rows = 1; // items per column
};

} // namespace tonewright::effect
