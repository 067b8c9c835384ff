// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Menu.hpp"

#include "Theme.hpp"

namespace tonewright::effect {

void Menu::open(const Rect& owner, const Rect& window, double unit, std::vector<std::string> items,
                std::optional<std::size_t> current) {
    _items = std::move(items);
    _current = current;
    _highlighted = current.value_or(0);
    _unit = unit;
    _rowHeight = std::max(22. * unit, 14.);
    const double pad = 4. * unit;
    const double available = window.height - 4. * pad;
    _rows = std::min(_items.size(),
                     std::max<std::size_t>(1, static_cast<std::size_t>((available - 2. * pad) / _rowHeight)));
    const std::size_t columnCount = (_items.size() + _rows - 1) / _rows;
    const auto columns = static_cast<double>(columnCount);
    const double width = std::min(std::max(owner.width, 110. * unit) * columns, window.width - 4. * pad);
    const double height = _rowHeight * static_cast<double>(_rows) + 2. * pad;
    double y = owner.bottom() + 2. * unit;
    if (y + height > window.height - pad) {
        y = owner.y - 2. * unit - height; // above the control, if the menu does not fit below
    }
    y = std::clamp(y, pad, std::max(pad, window.height - pad - height));
    const double x = std::clamp(owner.x, pad, std::max(pad, window.width - pad - width));
    _area = Rect{x, y, width, height}.snapped();
}

Rect Menu::itemArea(std::size_t item) const noexcept {
    const double pad = 4. * _unit;
    const std::size_t columnCount = (_items.size() + _rows - 1) / _rows;
    const auto columns = static_cast<double>(columnCount);
    const double width = (_area.width - 2. * pad) / columns;
    const std::size_t column = item / _rows;
    return {_area.x + pad + width * static_cast<double>(column),
            _area.y + pad + _rowHeight * static_cast<double>(item % _rows), width, _rowHeight};
}

std::optional<std::size_t> Menu::itemAt(Point point) const noexcept {
    for (std::size_t i = 0; i < _items.size(); ++i) {
        if (itemArea(i).contains(point)) {
            return i;
        }
    }
    return std::nullopt;
}

bool Menu::highlight(std::optional<std::size_t> item) noexcept {
    const bool changed = item != _highlighted;
    _highlighted = item;
    return changed;
}

void Menu::move(int by) noexcept {
    const int count = static_cast<int>(_items.size());
    const int from = _highlighted ? static_cast<int>(*_highlighted) : (by > 0 ? -1 : 0);
    _highlighted = static_cast<std::size_t>(((from + by) % count + count) % count);
}

void Menu::draw(cairo_t* context) const {
    fillRoundedRect(context, _area, 5. * _unit, Well);
    strokeRoundedRect(context, _area, 5. * _unit, SurfaceEdge, 1.);
    for (std::size_t i = 0; i < _items.size(); ++i) {
        const Rect row = itemArea(i);
        if (i == _highlighted) {
            fillRoundedRect(context, row, 3. * _unit, KnobFace);
        }
        const bool isCurrent = i == _current;
        drawText(context, {row.x + 8. * _unit, row.y, row.width - 12. * _unit, row.height}, _items[i],
                 {std::max(11.5 * _unit, 8.), isCurrent ? Warm : Ink, Align::Left});
    }
}

} // namespace tonewright::effect
