// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Layout.hpp"

namespace tonewright::effect {
namespace {

using P = Parameter;

struct SectionContent {
    Section section;
    std::optional<Parameter> selector;
    std::vector<Parameter> knobs;
};

const SectionContent& contentOf(Section section) {
    static const std::array<SectionContent, 6> contents{{
        {Section::Drive, P::Shape, {P::Drive, P::Bias, P::EnvelopeToDrive}},
        {Section::Filter, P::FilterMode, {P::Cutoff, P::Resonance, P::KeyTrack, P::EnvelopeToCutoff}},
        {Section::Envelope, std::nullopt, {P::Attack, P::Release}},
        {Section::Resonator, P::Voicing, {P::Note, P::Decay, P::Damping, P::Glide, P::ResonatorMix}},
        {Section::Onsets, P::MidiOut, {P::Sensitivity, P::Gate}},
        {Section::Output, P::Oversampling, {P::Mix, P::Output}},
    }};
    return contents[static_cast<std::size_t>(section)];
}

using Rows = std::vector<std::vector<Section>>;

void layOutHeader(Layout& layout) {
    const double u = layout.unit;
    const Rect bar = layout.header;
    const double margin = 8. * u;
    const double button = 24. * u;
    const double middle = bar.centre().y;
    const Rect power{bar.right() - margin - button, middle - button / 2., button, button};
    const double menuWidth = std::min(250. * u, bar.width * 0.42);
    const Rect menu{bar.centre().x - menuWidth / 2., middle - button / 2., menuWidth, button};
    layout.name = {bar.x + margin, bar.y, menu.x - button - 2. * margin - bar.x, bar.height};
    layout.controls.push_back(
        {ControlKind::PreviousPreset, {}, {menu.x - button - 3. * u, menu.y, button, button}});
    layout.controls.push_back({ControlKind::PresetMenu, {}, menu});
    layout.controls.push_back({ControlKind::NextPreset, {}, {menu.right() + 3. * u, menu.y, button, button}});
    layout.controls.push_back({ControlKind::Power, Parameter::Enabled, power});
}

void layOutSection(Layout& layout, Section section, Rect area) {
    const double u = layout.unit;
    const SectionContent& content = contentOf(section);
    const double titleHeight = 24. * u;
    const double pad = 5. * u;
    PanelSection placed{section, area, {area.x + pad, area.y, area.width - 2. * pad, titleHeight}};
    if (content.selector) {
        // In narrow sections the selector takes a little more than half of the width.
        const double width = std::min(placed.title.width * 0.58, 104. * u);
        layout.controls.push_back(
            {ControlKind::Selector,
             *content.selector,
             {placed.title.right() - width, area.y + 3.5 * u, width, titleHeight - 6. * u}});
        placed.title.width -= width + 3. * u;
    }
    const double cellWidth = (area.width - 2. * pad) / static_cast<double>(content.knobs.size());
    for (std::size_t i = 0; i < content.knobs.size(); ++i) {
        layout.controls.push_back({ControlKind::Knob,
                                   content.knobs[i],
                                   {area.x + pad + cellWidth * static_cast<double>(i), area.y + titleHeight,
                                    cellWidth, area.height - titleHeight - 3. * u}});
    }
    layout.sections.push_back(placed);
}

} // namespace

std::optional<std::size_t> Layout::controlAt(Point point) const noexcept {
    for (std::size_t i = 0; i < controls.size(); ++i) {
        if (controls[i].area.contains(point)) {
            return i;
        }
    }
    return std::nullopt;
}

Layout layOut(int width, int height) {
    static const Rows wide{{Section::Drive, Section::Filter, Section::Envelope},
                           {Section::Resonator, Section::Onsets, Section::Output}};
    static const Rows tall{{Section::Drive, Section::Envelope},
                           {Section::Filter, Section::Output},
                           {Section::Resonator, Section::Onsets}};
    const double w = std::max(width, 1);
    const double h = std::max(height, 1);
    const bool isTall = h > 0.86 * w;
    const Rows& rows = isTall ? tall : wide;

    Layout layout;
    layout.window = {0., 0., w, h};
    layout.unit = isTall ? std::min(w / 600., h / 560.) : std::min(w / NaturalWidth, h / NaturalHeight);
    layout.unit = std::max(layout.unit, 0.3);
    const double u = layout.unit;
    const double margin = 6. * u;
    layout.header = {0., 0., w, 38. * u};
    layOutHeader(layout);

    // The rows of knobs get a limited height; the display gets the remaining height.
    const double below = h - layout.header.height - margin;
    const double rowCount = static_cast<double>(rows.size());
    const double rowHeight =
        std::min(isTall ? below * 0.8 / rowCount - margin : below * 0.34 - margin, 190. * u);
    const double displayHeight = below - rowCount * (rowHeight + margin) - margin;
    const double meterWidth = 16. * u;
    const double top = layout.header.bottom();
    // Whole pixels, because these areas are redrawn continuously and must align exactly with their
    // surroundings.
    layout.inputMeter = Rect{margin, top, meterWidth, displayHeight}.snapped();
    layout.outputMeter = Rect{w - margin - meterWidth, top, meterWidth, displayHeight}.snapped();
    const double gap = std::ceil(0.6 * margin);
    layout.display = layout.inputMeter;
    layout.display.x = layout.inputMeter.right() + gap;
    layout.display.width = layout.outputMeter.x - gap - layout.display.x;

    double y = layout.display.bottom() + margin;
    for (const auto& row : rows) {
        double cells = 0.;
        for (const Section section : row) {
            cells += static_cast<double>(contentOf(section).knobs.size());
        }
        const double forCells = w - margin * static_cast<double>(row.size() + 1);
        double x = margin;
        for (const Section section : row) {
            const double sectionWidth =
                forCells * static_cast<double>(contentOf(section).knobs.size()) / cells;
            layOutSection(layout, section, {x, y, sectionWidth, rowHeight});
            x += sectionWidth + margin;
        }
        y += rowHeight + margin;
    }
    return layout;
}

} // namespace tonewright::effect
