// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SignalView.hpp"

#include "Theme.hpp"
#include "effect/dsp/StateVariableFilter.hpp"

#include <numbers>

namespace tonewright::effect {
namespace {

constexpr float TopDecibels = 0.F;
constexpr float BottomDecibels = -78.F;
constexpr float CurveTop = 24.F;     // the filter curve has a scale of its own
constexpr double SpectrumFall = 70.; // decibels per second
constexpr double MeterFall = 26.;
constexpr double HoldSeconds = 1.2;
constexpr double FlashSeconds = 0.25;

float decibelsOf(float linear) noexcept {
    return linear > 3.2e-5F ? 20.F * std::log10(linear) : -90.F;
}

double xOf(double hertz, const Rect& area) noexcept {
    return area.x + area.width * std::log(hertz / static_cast<double>(SpectrumLowestHertz)) /
                        std::log(static_cast<double>(SpectrumHighestHertz / SpectrumLowestHertz));
}

double yOf(float decibels, const Rect& area) noexcept {
    const float share = (TopDecibels - decibels) / (TopDecibels - BottomDecibels);
    return area.y + area.height * std::clamp(static_cast<double>(share), 0., 1.);
}

void drawGrid(cairo_t* context, const Rect& area, double u) {
    struct Mark {
        double hertz;
        const char* name;
    };
    constexpr std::array<Mark, 3> Named{{{100., "100"}, {1000., "1k"}, {10000., "10k"}}};
    cairo_set_line_width(context, 1.);
    setColour(context, SurfaceEdge.withAlpha(0.45));
    for (const double decade : {10., 100., 1000., 10000.}) {
        for (const double part : {1., 2., 5.}) {
            const double x = std::round(xOf(decade * part, area)) + 0.5;
            if (x > area.x + 2. && x < area.right() - 2.) {
                cairo_move_to(context, x, area.y);
                cairo_line_to(context, x, area.bottom());
            }
        }
    }
    for (const float level : {-20.F, -40.F, -60.F}) {
        const double y = std::round(yOf(level, area)) + 0.5;
        cairo_move_to(context, area.x, y);
        cairo_line_to(context, area.right(), y);
    }
    cairo_stroke(context);
    const double size = std::max(9. * u, 7.);
    for (const Mark& mark : Named) {
        drawText(context, {xOf(mark.hertz, area) + 3. * u, area.bottom() - size * 1.5, 40. * u, size * 1.4},
                 mark.name, {size, FaintInk, Align::Left});
    }
}

void drawMeter(cairo_t* context, const Rect& area, std::array<float, 2> levels, std::array<float, 2> holds,
               double u) {
    const double gap = std::max(1.5 * u, 1.);
    const double width = (area.width - 3. * gap) / 2.;
    const Rect inner = area.inset(gap);
    for (std::size_t c = 0; c < 2; ++c) {
        const double x = inner.x + (width + gap) * static_cast<double>(c);
        const double top = yOf(levels[c] * 1.2F, inner); // 0 dB is at the top, -65 dB at the bottom
        if (top < inner.bottom() - 0.5) {
            setColour(context, Cool.mixed(Warm, std::clamp((levels[c] + 24.) / 24., 0., 1.)));
            cairo_rectangle(context, x, top, width, inner.bottom() - top);
            cairo_fill(context);
        }
        if (holds[c] > BottomDecibels / 1.2F) {
            setColour(context, holds[c] > 0.F ? Alarm : Ink.withAlpha(0.8));
            const double height = std::max(2. * u, 1.);
            cairo_rectangle(context, x, std::max(yOf(holds[c] * 1.2F, inner), inner.y), width, height);
            cairo_fill(context);
        }
    }
}

} // namespace

void SignalView::Meter::rise(float peak) noexcept {
    const float decibels = decibelsOf(peak);
    level = std::max(level, decibels);
    if (decibels >= hold) {
        hold = decibels;
        holdSeconds = HoldSeconds;
    }
}

bool SignalView::Meter::fall(double seconds) noexcept {
    const bool moves = level > -90.F || hold > -90.F;
    level = std::max(level - static_cast<float>(MeterFall * seconds), -90.F);
    holdSeconds -= seconds;
    if (holdSeconds < 0.) {
        hold = std::max(level, hold - static_cast<float>(2. * MeterFall * seconds));
    }
    return moves;
}

void SignalView::push(const DisplayFrame& frame) noexcept {
    if (frame.onsets != _frame.onsets) {
        _flash = 1.;
    }
    _changed = _changed || frame.cutoffHertz != _frame.cutoffHertz || frame.rootNote != _frame.rootNote;
    _frame = frame;
    _silentSeconds = 0.;
    for (std::size_t c = 0; c < 2; ++c) {
        _input[c].rise(frame.inputPeaks[c]);
        _output[c].rise(frame.outputPeaks[c]);
    }
    for (std::size_t band = 0; band < SpectrumBands; ++band) {
        if (frame.spectrum[band] > _bands[band]) {
            _bands[band] += 0.7F * (frame.spectrum[band] - _bands[band]);
            _changed = true;
        }
    }
}

bool SignalView::advance(double seconds) noexcept {
    _silentSeconds += seconds;
    for (auto* meters : {&_input, &_output}) {
        for (Meter& meter : *meters) {
            _changed = meter.fall(seconds) || _changed;
        }
    }
    // If no more frames arrive because the host has stopped, the spectrum decays.
    const bool heard = _silentSeconds < 0.3;
    for (std::size_t band = 0; band < SpectrumBands; ++band) {
        const float rest = heard ? _frame.spectrum[band] : SpectrumFloorDecibels;
        if (_bands[band] > std::max(rest, BottomDecibels)) {
            _bands[band] = std::max(rest, _bands[band] - static_cast<float>(SpectrumFall * seconds));
            _changed = true;
        }
    }
    if (_flash > 0.) {
        _flash = std::max(0., _flash - seconds / FlashSeconds);
        _changed = true;
    }
    return _changed;
}

void SignalView::drawSpectrum(cairo_t* context, const Rect& area, double u) const {
    cairo_new_path(context);
    double lastX = area.x;
    double lastY = yOf(_bands[0], area);
    cairo_move_to(context, lastX, lastY);
    for (std::size_t band = 0; band < SpectrumBands; ++band) {
        const double x = xOf(static_cast<double>(spectrumBandHertz(band)), area);
        const double y = yOf(_bands[band], area);
        const double middle = (lastX + x) / 2.;
        cairo_curve_to(context, middle, lastY, middle, y, x, y);
        lastX = x;
        lastY = y;
    }
    cairo_line_to(context, area.right(), lastY);
    cairo_path_t* line = cairo_copy_path(context);
    cairo_line_to(context, area.right(), area.bottom());
    cairo_line_to(context, area.x, area.bottom());
    cairo_close_path(context);
    setColour(context, Warm.withAlpha(0.22));
    cairo_fill(context);
    cairo_append_path(context, line);
    cairo_path_destroy(line);
    setColour(context, Warm);
    cairo_set_line_width(context, std::max(1.4 * u, 1.));
    cairo_stroke(context);
}

void SignalView::drawFilterCurve(cairo_t* context, const Rect& area, double u,
                                 const ParameterValues& values) const {
    const auto mode = static_cast<FilterMode>(values[index(Parameter::FilterMode)]);
    if (mode == FilterMode::Off) {
        return;
    }
    const float cutoff = _frame.cutoffHertz > 0.F ? _frame.cutoffHertz : values[index(Parameter::Cutoff)];
    const float resonance = values[index(Parameter::Resonance)] / 100.F;
    cairo_new_path(context);
    const int steps = 72;
    for (int i = 0; i <= steps; ++i) {
        const float part = static_cast<float>(i) / static_cast<float>(steps);
        const float hertz = SpectrumLowestHertz * std::pow(SpectrumHighestHertz / SpectrumLowestHertz, part);
        const float gain = StateVariableFilter::magnitude(mode, cutoff, resonance, hertz);
        const float decibels = std::max(20.F * std::log10(gain + 1e-6F), -60.F);
        const double y = area.y + area.height * (0.36 - 0.36 * static_cast<double>(decibels / CurveTop));
        cairo_line_to(context, area.x + area.width * static_cast<double>(part),
                      std::min(y, area.bottom() + 4.));
    }
    setColour(context, Cool.withAlpha(0.9));
    cairo_set_line_width(context, std::max(1.6 * u, 1.1));
    cairo_stroke(context);
}

void SignalView::drawCaption(cairo_t* context, const Rect& area, double u,
                             const ParameterValues& values) const {
    const double size = std::max(10. * u, 7.);
    const double radius = size * 0.34;
    const Point lamp{area.right() - 9. * u, area.y + 10. * u};
    cairo_new_path(context);
    cairo_arc(context, lamp.x, lamp.y, radius, 0., 2. * std::numbers::pi);
    setColour(context, SurfaceEdge.mixed(Cool.mixed(Ink, 0.4), _flash));
    cairo_fill(context);
    const float root = _frame.rootNote > 0.F ? _frame.rootNote : values[index(Parameter::Note)];
    drawText(context, {lamp.x - 56. * u, lamp.y - size, 56. * u - radius * 2.2, 2. * size},
             noteName(static_cast<int>(root)), {size, DimInk, Align::Right});
}

void SignalView::paintBackdrop(cairo_t* context, const Layout& layout) {
    const Rect whole = layout.inputMeter.united(layout.outputMeter);
    if (!_backdrop) {
        _backdrop.reset(cairo_surface_create_similar(cairo_get_target(context), CAIRO_CONTENT_COLOR,
                                                     static_cast<int>(whole.width),
                                                     static_cast<int>(whole.height)));
        cairo_t* const once = cairo_create(_backdrop.get());
        cairo_translate(once, -whole.x, -whole.y);
        setColour(once, Background);
        cairo_paint(once);
        fillRoundedRect(once, layout.inputMeter, 3. * layout.unit, Well);
        fillRoundedRect(once, layout.outputMeter, 3. * layout.unit, Well);
        fillRoundedRect(once, layout.display, 5. * layout.unit, Well);
        drawGrid(once, layout.display, layout.unit);
        cairo_destroy(once);
    }
    cairo_set_source_surface(context, _backdrop.get(), whole.x, whole.y);
    cairo_rectangle(context, whole.x, whole.y, whole.width, whole.height);
    cairo_fill(context);
}

void SignalView::draw(cairo_t* context, const Layout& layout, const ParameterValues& values) {
    const double u = layout.unit;
    paintBackdrop(context, layout);
    drawMeter(context, layout.inputMeter, {_input[0].level, _input[1].level},
              {_input[0].hold, _input[1].hold}, u);
    drawMeter(context, layout.outputMeter, {_output[0].level, _output[1].level},
              {_output[0].hold, _output[1].hold}, u);
    const Rect area = layout.display;
    cairo_save(context);
    cairo_rectangle(context, area.x, area.y, area.width, area.height);
    cairo_clip(context);
    // Lower quality is sufficient for moving parts and takes half the time.
    cairo_set_antialias(context, CAIRO_ANTIALIAS_FAST);
    cairo_set_tolerance(context, 0.3);
    drawSpectrum(context, area, u);
    drawFilterCurve(context, area, u, values);
    drawCaption(context, area, u, values);
    cairo_restore(context);
    _changed = false;
}

} // namespace tonewright::effect
