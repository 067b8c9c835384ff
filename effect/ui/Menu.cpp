// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Menu.hpp"

#include "Theme.hpp"

namespace tonewright::effect {

void Menu::open(const Rect& owner, const Rect& window, double unit, std::vector<std::string> items,
                std::optional<std::size_t> current) {
    items_ = std::move(items);
    current_ = current;
    highlighted_ = current.value_or(0);
    unit_ = unit;
    rowHeight_ = std::max(22. * unit, 14.);
    const double pad = 4. * unit;
    const double available = window.height - 4. * pad;
    rows_ = std::min(items_.size(),
                     std::max<std::size_t>(1, static_cast<std::size_t>((available - 2. * pad) / rowHeight_)));
    const std::size_t columnCount = (items_.size() + rows_ - 1) / rows_;
    const auto columns = static_cast<double>(columnCount);
    const double width = std::min(std::max(owner.width, 110. * unit) * columns, window.width - 4. * pad);
    const double height = rowHeight_ * static_cast<double>(rows_) + 2. * pad;
    double y = owner.bottom() + 2. * unit;
    if (y + height > window.height - pad) {
        y = owner.y - 2. * unit - height; // no room below
    }
    y = std::clamp(y, pad, std::max(pad, window.height - pad - height));
    const double x = std::clamp(owner.x, pad, std::max(pad, window.width - pad - width));
    area_ = Rect{x, y, width, height}.snapped();
}

Rect Menu::itemArea(std::size_t item) const noexcept {
    const double pad = 4. * unit_;
    const std::size_t columnCount = (items_.size() + rows_ - 1) / rows_;
    const auto columns = static_cast<double>(columnCount);
    const double width = (area_.width - 2. * pad) / columns;
    const std::size_t column = item / rows_;
    return {area_.x + pad + width * static_cast<double>(column),
            area_.y + pad + rowHeight_ * static_cast<double>(item % rows_), width, rowHeight_};
}

std::optional<std::size_t> Menu::itemAt(Point point) const noexcept {
    for (std::size_t i = 0; i < items_.size(); ++i) {
        if (itemArea(i).contains(point)) {
            return i;
        }
    }
    return std::nullopt;
}

bool Menu::highlight(std::optional<std::size_t> item) noexcept {
    const bool changed = item != highlighted_;
    highlighted_ = item;
    return changed;
}

void Menu::move(int by) noexcept {
    const int count = static_cast<int>(items_.size());
    const int from = highlighted_ ? static_cast<int>(*highlighted_) : (by > 0 ? -1 : 0);
    highlighted_ = static_cast<std::size_t>(((from + by) % count + count) % count);
}

void Menu::draw(cairo_t* context) const {
    fillRoundedRect(context, area_, 5. * unit_, Well);
    strokeRoundedRect(context, area_, 5. * unit_, SurfaceEdge, 1.);
    for (std::size_t i = 0; i < items_.size(); ++i) {
        const Rect row = itemArea(i);
        if (i == highlighted_) {
            fillRoundedRect(context, row, 3. * unit_, KnobFace);
        }
        const bool isCurrent = i == current_;
        drawText(context, {row.x + 8. * unit_, row.y, row.width - 12. * unit_, row.height}, items_[i],
                 {std::max(11.5 * unit_, 8.), isCurrent ? Warm : Ink, Align::Left});
    }
}

} // namespace tonewright::effect
