// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The live part of the panel: spectrum, filter curve and level meters, with their ballistics.
#pragma once

#include "Layout.hpp"
#include "effect/dsp/Parameters.hpp"
#include "effect/dsp/Processor.hpp"

#include <cairo.h>

#include <array>
#include <memory>

namespace tonewright::effect {

/// Turns display frames into a steady picture.
class SignalView {
  public:
    /// Takes over the plug-in's measurements.
    void push(const DisplayFrame& frame) noexcept;

    /// Advances the animation; returns whether the picture has changed since it was last drawn.
    bool advance(double seconds) noexcept;

    /// Discards what was drawn for another size, or for a display that closes.
    void forgetBackdrop() noexcept { _backdrop.reset(); }

    /// Requests a redraw whatever the signal does.
    void invalidate() noexcept { _changed = true; }

    void draw(cairo_t* context, const Layout& layout, const ParameterValues& values);

    /// Returns the modulated cutoff; 0 before anything was processed.
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
    double _flash = 0.; // of the onset lamp, 1 down to 0
    double _silentSeconds = 0.;
    bool _changed = true;
    // Everything static, drawn once: rounded corners and text cost more than everything that moves.
    std::unique_ptr<cairo_surface_t, DestroySurface> _backdrop;

    [[nodiscard]] static Spectrum filled(float value) noexcept {
        Spectrum spectrum;
        spectrum.fill(value);
        return spectrum;
    }
};

} // namespace tonewright::effect
