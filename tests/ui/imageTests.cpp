// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests decoding without a display: every kind of picture, and every kind of invalid or malicious data.
#include "platform/ui/detail/imageTexture.hpp"
#include "tests/support/testing.hpp"
#include "tests/ui/pictures.hpp"

namespace {

using namespace platform;
using namespace std::string_literals;
using namespace tonewright::test;

std::shared_ptr<UIImage> decode(const std::string& data) {
    return UIImage::initWithData(std::as_bytes(std::span(data)));
}

CGSize sizeOf(const std::string& data) {
    const auto image = decode(data);
    return image ? image->size() : CGSize{};
}

// Returns the blue, green, red and alpha of the top left pixel.
std::uint32_t firstPixel(const UIImage& image) {
    const auto width = static_cast<std::size_t>(image.size().width);
    std::vector<std::uint32_t> pixels(width * static_cast<std::size_t>(image.size().height));
    gdk_texture_download(textureOf(image), reinterpret_cast<guchar*>(pixels.data()), width * 4);
    return pixels.front();
}

TEST(Image, AVectorImageIsDrawnOutsideThisProcess) {
    const auto image =
        decode("<?xml version='1.0'?>\n<!-- a sign -->\n<svg xmlns='http://www.w3.org/2000/svg' "
               "width='30' height='20'><rect width='30' height='20' fill='#f00'/>"
               "<text x='5' y='15' font-size='12'>A</text></svg>");
    EXPECT_EQ(contentOf("/proc/self/maps").find("librsvg"), std::string::npos);
    if (!image) GTEST_SKIP() << "this system has no decoder for vector images";
    EXPECT_EQ(image->size(), (CGSize{30, 20}));
    EXPECT_EQ(firstPixel(*image), 0xFFFF0000U);
}

TEST(Image, KnowsWhatServersHave) {
    for (const char* format : {"png", "jpeg", "bmp", "tiff", "ico"}) {
        const auto image = decode(encoded(Picture{32, 16}, format));
        ASSERT_TRUE(image) << format;
        EXPECT_EQ(image->size(), (CGSize{32, 16})) << format;
        const std::uint32_t pixel = firstPixel(*image);
        EXPECT_NEAR((pixel >> 16U) & 0xFFU, Picture::Red, 4) << format;
        EXPECT_NEAR((pixel >> 8U) & 0xFFU, Picture::Green, 4) << format;
        EXPECT_NEAR(pixel & 0xFFU, Picture::Blue, 4) << format;
        EXPECT_EQ(pixel >> 24U, 0xFFU) << format;
    }
    EXPECT_EQ(sizeOf(gif(1, 1, 1, 1)), (CGSize{1, 1}));
    EXPECT_EQ(sizeOf(packedBmp(4, 2)), (CGSize{4, 2}));
    EXPECT_EQ(sizeOf(icon(encoded(Picture{256, 128}, "png"), 256, 128)), (CGSize{256, 128}));
    // A photograph taken with a tilted camera is shown upright.
    EXPECT_EQ(sizeOf(withOrientation(encoded(Picture{32, 16}, "jpeg"), 6)), (CGSize{16, 32}));
}

TEST(Image, RefusesASmallFileWithALargePictureBeforeItCosts) {
    const std::string jpeg = encoded(Picture{32, 16}, "jpeg");
    const std::map<const char*, std::string> cases = {
        {"png", padded(pngHeader(20000, 20000))},
        {"png, long", padded(pngHeader(2147483647, 1))},
        {"jpeg", withSize(jpeg, 8193, 8192)}, // one column too many
        {"jpeg, largest", withSize(jpeg, 65500, 65500)},
        {"gif", padded(gif(20000, 20000, 20000, 20000))},
        {"bmp", packedBmp(20000, 20000)},
        {"tiff", padded(tiffHeader(20000, 20000))},
        {"svg", "<svg xmlns='http://www.w3.org/2000/svg' width='20000' height='20000'/>"},
        {"svg, huge", "<svg xmlns='http://www.w3.org/2000/svg' width='1e9' height='1e9'/>"},
    };
    rusage before{};
    ::getrusage(RUSAGE_SELF, &before);
    for (const auto& [name, data] : cases) {
        ASSERT_LE(data.size(), 1024U) << name;
        const auto began = std::chrono::steady_clock::now();
        EXPECT_FALSE(decode(data)) << name;
        EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::milliseconds(100)) << name;
    }
    rusage after{};
    ::getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 20'000) << "KiB";
    EXPECT_EQ(sizeOf(withSize(jpeg, 8192, 8192)), (CGSize{8192, 8192})); // the largest size
}

TEST(Image, BytesThatAreNoPictureGiveNone) {
    const std::string jpeg = encoded(Picture{32, 16}, "jpeg");
    for (const std::string& data :
         {""s, "\x89"s, "\x89PNG\r\n\x1A\n"s, "<!doctype html><title>not <svg here"s, "P6 1 1 255\n123"s,
          "RIFF"s, "RIFF1234WEBP"s, "<svg"s, "<svg><g></svg>"s, std::string(100'000, '<')}) {
        EXPECT_FALSE(decode(data)) << data.substr(0, 20);
    }
}

TEST(Image, WhatIsCutShortGivesNone) {
    const Picture picture{32, 16};
    const std::string png = encoded(picture, "png");
    for (const auto& [name, whole] : std::map<std::string, std::string>{{"png", png},
                                                                        {"jpeg", encoded(picture, "jpeg")},
                                                                        {"bmp", encoded(picture, "bmp")},
                                                                        {"bmp, packed", packedBmp(4, 2)},
                                                                        {"gif", gif(1, 1, 1, 1)},
                                                                        {"tiff", encoded(picture, "tiff")},
                                                                        {"ico", encoded(picture, "ico")},
                                                                        {"ico of png", icon(png, 32, 16)}}) {
        EXPECT_TRUE(decode(whole)) << name;
        for (std::size_t missing = 1; missing <= whole.size(); missing += 1 + missing / 8) {
            EXPECT_FALSE(decode(whole.substr(0, whole.size() - missing)))
                << name << " without its last " << missing << " bytes";
        }
    }
}

// Tests the limit of the decoding process, which counts processor time.
TEST(Image, GivesUpWhatTakesTooLong) {
    if (!decode(vectorNoise(9, 1))) GTEST_SKIP() << "this system has no decoder for vector images";
    const auto began = std::chrono::steady_clock::now();
    rusage before{};
    ::getrusage(RUSAGE_CHILDREN, &before);
    EXPECT_FALSE(decode(vectorNoise(8000, 100)));
    rusage after{};
    ::getrusage(RUSAGE_CHILDREN, &after);
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::milliseconds(2500));
    EXPECT_LE(after.ru_utime.tv_sec - before.ru_utime.tv_sec, 3);
    EXPECT_TRUE(decode(vectorNoise(9, 1))) << "decoding still works";
}

// Files with changed bytes decode to a picture or to none, depending on whether the format detects the
// change. They never do harm, on any thread.
TEST(Image, DamageHarmsNothing) {
    std::vector<std::thread> threads;
    for (const char* format : {"png", "jpeg", "bmp", "tiff", "ico"}) {
        threads.emplace_back([format] {
            const std::string whole = encoded(Picture{32, 16}, format);
            std::uint32_t random = 1;
            for (int round = 0; round < 300; ++round) {
                std::string damaged = whole;
                for (int change = 0; change < 4; ++change) {
                    random = random * 1664525U + 1013904223U;
                    damaged[(random >> 8U) % damaged.size()] = static_cast<char>(random >> 24U);
                }
                (void)decode(damaged);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
}

} // namespace
