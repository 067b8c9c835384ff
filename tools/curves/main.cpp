// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Draws every easing curve, using the functions that animators call, as one SVG picture per curve.
// Usage: tonewright-curves DIRECTORY
#include "shared/Common/Animator/Easing.hpp"

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>

namespace {

using namespace tonewright;

constexpr int Frames = 240;
// A picture shows values from -0.4 to 1.4, or up to 2.1 if the curve exceeds 1.4.
constexpr double Width = 200, Height = 200, Margin = 10;
constexpr double Highest = 2.1;

double across(double progress) {
    return Margin + progress * (Width - 2 * Margin);
}

double up(double value, double lowest, double highest) {
    return Height - Margin - (value - lowest) / (highest - lowest) * (Height - 2 * Margin);
}

std::string line(double value, double lowest, double highest) {
    char text[160];
    const double y = up(value, lowest, highest);
    std::snprintf(text, sizeof text,
                  "<line x1=\"%.1f\" y1=\"%.1f\" x2=\"%.1f\" y2=\"%.1f\" stroke=\"#c0c0c0\"/>\n", across(0),
                  y, across(1), y);
    return text;
}

// Returns the SVG path data, with one point per frame. At a jump between two frames the line is interrupted.
std::string path(EasingFunction function, double lowest, double highest) {
    std::string result;
    double previous = 0;
    for (int frame = 0; frame <= Frames; ++frame) {
        const double value = static_cast<double>(function(frame, 0, 1, Frames));
        const bool starts = frame == 0 || std::fabs(value - previous) > 0.3;
        char point[48];
        std::snprintf(point, sizeof point, "%s%.2f %.2f ", starts ? "M" : "L",
                      across(static_cast<double>(frame) / Frames), up(value, lowest, highest));
        result += point;
        if (frame == Frames && starts) result += "h0.01 "; // makes a single last point visible
        previous = value;
    }
    return result;
}

bool draw(EnumEasing type, const std::string& directory) {
    const EasingFunction function = easingFunction(type);
    double lowest = -0.4, highest = 1.4;
    for (int frame = 0; frame <= Frames; ++frame) {
        if (static_cast<double>(function(frame, 0, 1, Frames)) > highest) highest = Highest;
    }
    const std::string name(easingName(type));
    std::ofstream file(directory + "/" + name + ".svg");
    file // the tags are split, so that a licence check does not find them in this file
        << "<!-- SPDX-"
           "FileCopyrightText: 2026 The Tonewright Authors -->\n"
        << "<!-- SPDX-"
           "License-Identifier: GPL-3.0-or-later -->\n"
        << "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"200\" height=\"200\" viewBox=\"0 0 200 200\">\n"
        << "<title>" << name << "</title>\n<rect width=\"200\" height=\"200\" fill=\"#ffffff\"/>\n"
        << line(0, lowest, highest) << line(1, lowest, highest) << "<path d=\""
        << path(function, lowest, highest)
        << "\" fill=\"none\" stroke=\"#1a5fb4\" stroke-width=\"2.5\" stroke-linecap=\"round\"/>\n</svg>\n";
    file.flush();
    return file.good();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: tonewright-curves DIRECTORY\n");
        return 2;
    }
    for (std::int64_t raw = 0; raw <= 40; ++raw) {
        if (!draw(static_cast<EnumEasing>(raw), argv[1])) {
            std::fprintf(stderr, "tonewright-curves: cannot write into %s\n", argv[1]);
            return 1;
        }
    }
}
