// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The animated part of the panel: spectrum, filter curve and level meters.
#pragma once

#include "Layout.hpp"
#include "effect/dsp/Parameters.hpp"
#include "effect/dsp/Processor.hpp"

#include <cairo.h>

#include <array>
#include <memory>

namespace tonewright::effect {

/// Animates the display from the plug-in's display frames.
class SignalView {
  public:
    /// Stores the measurements of a display frame.
    void push(const DisplayFrame& frame) noexcept;

    /// Advances the animation, and returns whether the view has changed since it was last drawn.
    bool advance(double seconds) noexcept;

    /// Discards the backdrop. To be called after a change of size and before the display is closed.
    void forgetBackdrop() noexcept { _backdrop.reset(); }

    /// Makes the next `advance` return true.
    void invalidate() noexcept { _changed = true; }

    void draw(cairo_t* context, const Layout& layout, const ParameterValues& values);

    /// Returns the modulated cutoff, or 0 before the first display frame.
    [[nodiscard]] float cutoffHertz() const noexcept { return _frame.cutoffHertz; }

  private:
    struct Meter {
        float level = -90.F; // decibels
        float hold = -90.F;
        double holdSeconds = 0.;

        void rise(float peak) noexcept;
        bool fall(double seconds) noexcept;
    };

    struct DestroySurface {
        void operator()(cairo_surface_t* surface) const noexcept { cairo_surface_destroy(surface); }
    };

    void paintBackdrop(cairo_t* context, const Layout& layout);
    void drawSpectrum(cairo_t* context, const Rect& area, double unit) const;
    void drawFilterCurve(cairo_t* context, const Rect& area, double unit,
                         const ParameterValues& values) const;
    void drawCaption(cairo_t* context, const Rect& area, double unit, const ParameterValues& values) const;

    DisplayFrame _frame{};
    Spectrum _bands = filled(SpectrumFloorDecibels);
    std::array<Meter, 2> _input;
    std::array<Meter, 2> _output;
    double _flash = 0.; // brightness of the onset lamp, falling from 1 to 0
    double _silentSeconds = 0.;
    bool _changed = true;
    // All static parts, drawn once, because rounded corners and text take longer to draw than all animated
    // parts.
    std::unique_ptr<cairo_surface_t, DestroySurface> _backdrop;

    [[nodiscard]] static Spectrum filled(float value) noexcept {
        Spectrum spectrum;
        spectrum.fill(value);
        return spectrum;
    }
};

} // namespace tonewright::effect
