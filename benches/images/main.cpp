// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures how long decoding a picture takes, compared with the decoder alone, and how long it takes to
// refuse a small file that declares a huge picture.
#include "benches/support/measure.hpp"
#include "platform/ui/UIImage.hpp"
#include "tests/ui/pictures.hpp"

#include <ctime>
#include <memory>

namespace {

using platform::UIImage;

constexpr int Width = 3000;
constexpr int Height = 2000;
constexpr int Rounds = 15;
constexpr int Refusals = 101;

double cpuSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

template <class Work>
double cpuSecondsOf(const Work& work) {
    const double begin = cpuSeconds();
    work();
    return cpuSeconds() - begin;
}

// Paints a substitute for a photograph: gradual changes with noise.
void paint(GdkPixbuf* pixels) {
    std::uint32_t random = 1;
    guchar* bytes = gdk_pixbuf_get_pixels(pixels);
    const int stride = gdk_pixbuf_get_rowstride(pixels);
    for (int y = 0; y < Height; ++y) {
        for (int x = 0; x < Width * 3; ++x) {
            random = random * 1664525U + 1013904223U;
            bytes[y * stride + x] =
                static_cast<guchar>((x / 16 + y / 12) % 192 + static_cast<int>(random >> 28U));
        }
    }
}

// Decodes as the GdkPixbuf manual shows: a loader for the format, fed with the whole file.
bool decodeByLibrary(const std::string& data, const char* format) {
    GdkPixbufLoader* loader = gdk_pixbuf_loader_new_with_type(format, nullptr);
    const bool isFed = gdk_pixbuf_loader_write(loader, reinterpret_cast<const guchar*>(data.data()),
                                               data.size(), nullptr) != FALSE;
    const bool isDone = gdk_pixbuf_loader_close(loader, nullptr) != FALSE && isFed;
    const bool isRight = isDone && gdk_pixbuf_get_width(gdk_pixbuf_loader_get_pixbuf(loader)) == Width;
    g_object_unref(loader);
    return isRight;
}

bool decode(const std::string& data) {
    const auto image = UIImage::initWithData(std::as_bytes(std::span(data)));
    return image && image->size() == platform::CGSize{Width, Height};
}

} // namespace

int main() {
    bench::Report report;
    const std::unique_ptr<GdkPixbuf, decltype(&g_object_unref)> picture(
        gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, Width, Height), g_object_unref);
    paint(picture.get());
    double worst = 0;
    std::printf("%-6s %10s %14s %14s %8s\n", "format", "kB", "ours, ms", "library, ms", "ratio");
    for (const char* format : {"png", "jpeg", "bmp"}) {
        const std::string data = tonewright::test::encoded(picture.get(), format);
        if (!decode(data) || !decodeByLibrary(data, format)) return 1; // also loads the decoder
        std::vector<double> ours;
        std::vector<double> library;
        std::vector<double> ratios;
        for (int round = 0; round < Rounds; ++round) {
            bool isRight = true;
            const auto byUs = [&] {
                ours.push_back(cpuSecondsOf([&] { isRight = decode(data) && isRight; }));
            };
            const auto byLibrary = [&] {
                library.push_back(cpuSecondsOf([&] { isRight = decodeByLibrary(data, format) && isRight; }));
            };
            if (round % 2 == 0) byUs();
            byLibrary();
            if (round % 2 != 0) byUs();
            if (!isRight) return 1;
            ratios.push_back(ours.back() / library.back());
        }
        const double ratio = bench::median(ratios);
        worst = std::max(worst, ratio);
        std::printf("%-6s %10.0f %14.2f %14.2f %8.3f\n", format, static_cast<double>(data.size()) / 1e3,
                    bench::median(ours) * 1e3, bench::median(library) * 1e3, ratio);
        report.figure(std::string(format) + "_megapixels_per_second",
                      Width * Height / bench::median(ours) / 1e6);
        report.ratio(std::string("decode_") + format + "/library", ratio);
    }
    report.ratio("decode/library", worst);

    const std::string bomb = tonewright::test::padded(tonewright::test::pngHeader(20000, 20000));
    std::vector<double> refusals;
    for (int i = 0; i < Refusals; ++i) {
        bool isRefused = false;
        refusals.push_back(bench::nanoseconds(
            [&] { isRefused = UIImage::initWithData(std::as_bytes(std::span(bomb))) == nullptr; }));
        if (!isRefused) return 1;
    }
    std::printf("a file of 1 kB that declares 20,000 x 20,000 pixels is refused in %.3f ms\n",
                bench::median(refusals) / 1e6);
    report.figure("refuse_ms", bench::median(refusals) / 1e6);
    report.write("images");
}
