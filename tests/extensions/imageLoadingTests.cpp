// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests loading images from a server on loopback and from the disk into a view, and the log lines about it.
#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/ui/UIImageView.hpp"
#include "platform/ui/detail/imageTexture.hpp"
#include "shared/Common/Extensions/imageLoading.hpp"
#include "tests/network/Servers.hpp"
#include "tests/ui/pictures.hpp"
#include "tests/ui/toolkitFixture.hpp"

namespace {

using namespace platform;
using namespace tonewright;
using namespace tonewright::test;

const std::string NotEncoded = "UIImageView::loadFrom() : Could not encode url string : ";
const std::string NotRead = "UIImageView::loadFrom() : Could not encode image data.";
const std::string NotAssigned = "UIImageView::loadFrom() : Could not assign image.";
const std::string Fetched = "Fetched image successfully";

std::string answer(const std::string& status, const std::string& type, const std::string& content) {
    return "HTTP/1.1 " + status + "\r\nContent-Type: " + type +
           "\r\nContent-Length: " + std::to_string(content.size()) + "\r\nConnection: close\r\n\r\n" +
           content;
}

class ImageLoading : public platform::testing::ToolkitTest {
  protected:
    ImageLoading() { _view->setImage(_former); }

    /// Calls `loadFrom` and waits until the image is loaded; returns the printed lines.
    Lines load(const std::string& text) {
        CapturedOutput output;
        loadFrom(_view, text);
        EXPECT_TRUE(output.lines().empty()) << "the image is loaded asynchronously";
        EXPECT_TRUE(platform::testing::waitFor([&] { return !output.lines().empty(); }));
        return output.take();
    }

    /// Calls `getImageFromURLString` and waits until its task has released the view; returns the printed
    /// lines.
    Lines fetch(const std::string& text) {
        CapturedOutput output;
        getImageFromURLString(_view, text);
        EXPECT_TRUE(platform::testing::waitFor([&] { return _view.use_count() == 1; }));
        return output.take();
    }

    /// Returns the width of the view's image: 0 for none, 7 for the former image.
    int width() const { return _view->image() ? static_cast<int>(_view->image()->size().width) : 0; }

    static std::shared_ptr<UIImage> image(const std::string& data) {
        return UIImage::initWithData(std::as_bytes(std::span(data)));
    }

    const std::string _png = encoded(Picture{3, 2}, "png");
    const std::shared_ptr<UIImage> _former = image(encoded(Picture{7, 7}, "png"));
    std::shared_ptr<UIImageView> _view = std::make_shared<UIImageView>();
};

TEST_F(ImageLoading, FollowsWhatTheServerAnswers) {
    // Each case: name, response, width after loading, whether a fetch reports success, width after fetching.
    using Case = std::tuple<const char*, std::string, int, bool, int>;
    const std::string html = "<!doctype html><p>Not here";
    const std::string bomb = padded(pngHeader(20000, 20000));
    for (const auto& [name, response, loadedWidth, isFetched, fetchedWidth] : std::vector<Case>{
             {"an image", answer("200 OK", "image/png", _png), 3, true, 3},
             {"of a wrong type", answer("200 OK", "text/html", _png), 3, true, 3},
             {"in an answer of another kind", answer("404 Not Found", "image/png", _png), 3, false, 3},
             {"no page", answer("404 Not Found", "text/html", html), 7, false, 0},
             {"a page that says it is one", answer("200 OK", "image/png", html), 7, true, 0},
             {"nothing", answer("200 OK", "image/png", ""), 7, true, 0},
             {"half of one", answer("200 OK", "image/png", _png.substr(0, 40)), 7, true, 0},
             {"a bomb", answer("200 OK", "image/png", bomb), 7, true, 0}}) {
        SCOPED_TRACE(name);
        const BadServer server([&, text = response](int connection, auto&) { sendAll(connection, text); });
        _view->setImage(_former);
        EXPECT_EQ(load(server.url()), Lines{NotAssigned});
        EXPECT_EQ(width(), loadedWidth);
        _view->setImage(_former);
        EXPECT_EQ(fetch(server.url()), isFetched ? Lines{Fetched} : Lines{});
        EXPECT_EQ(width(), fetchedWidth);
    }
}

TEST_F(ImageLoading, AFailureLeavesTheViewAsItWas) {
    const BadServer cut(
        [](int connection, auto&) { sendAll(connection, "HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\nx"); });
    const Scratch scratch;
    const std::string huge = scratch.file("huge");
    std::filesystem::resize_file(huge, std::uintmax_t{1} << 30U);
    for (const std::string& text :
         Lines{cut.url(), "http://127.0.0.1:1/", "relative.png", "mailto:a@b.example",
               URL::fileURLWithPath(scratch / "missing").absoluteString(),
               URL::fileURLWithPath(huge).absoluteString()}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(load(text), Lines{NotRead});
        const Lines lines = fetch(text);
        ASSERT_EQ(lines.size(), 1U);
        EXPECT_TRUE(lines[0].starts_with("Error Domain=Network Code=")) << lines[0];
        EXPECT_EQ(width(), 7);
    }
    for (const char* text : {"", "http://a b/", "%"}) {
        EXPECT_EQ(load(text), Lines{NotEncoded + text});
        EXPECT_EQ(fetch(text), Lines{});
    }
    EXPECT_EQ(width(), 7);
}

TEST_F(ImageLoading, ReadsFilesAndNeedsNoView) {
    const Scratch scratch;
    const std::string file = URL::fileURLWithPath(scratch.file("ü %.png", _png)).absoluteString();
    EXPECT_EQ(fetch(file), Lines{}); // without an HTTP response, no success is reported
    EXPECT_EQ(width(), 3);
    _view->setImage(_former);
    EXPECT_EQ(load(file), Lines{NotAssigned});
    EXPECT_EQ(width(), 3);
    CapturedOutput output;
    loadFrom(_view, file);
    _view.reset();
    EXPECT_TRUE(platform::testing::waitFor([&] { return !output.lines().empty(); }));
    EXPECT_EQ(output.take(), Lines{NotAssigned});
}

TEST_F(ImageLoading, ReadingHoldsTheMainQueueAndFetchingDoesNot) {
    std::atomic<bool> mayAnswer{false};
    std::atomic<int> asked{0};
    const BadServer server([&](int connection, auto&) {
        ++asked;
        for (int wait = 0; wait < 1000 && !mayAnswer; ++wait) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        sendAll(connection, answer("200 OK", "image/png", _png));
    });
    const CapturedOutput output;
    getImageFromURLString(_view, server.url());
    EXPECT_TRUE(platform::testing::waitFor([&] { return asked == 1; }))
        << "the main loop runs during the load";
    EXPECT_EQ(width(), 7);
    mayAnswer = true;
    EXPECT_TRUE(platform::testing::waitFor([&] { return _view.use_count() == 1; }));
    EXPECT_EQ(width(), 3);

    mayAnswer = false;
    std::thread later([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        mayAnswer = true;
    });
    bool hasLooked = false;
    loadFrom(_view, server.url());
    DispatchQueue::main().async([&] {
        EXPECT_TRUE(mayAnswer) << "the load did not block the main queue";
        hasLooked = true;
    });
    EXPECT_TRUE(platform::testing::waitFor([&] { return hasLooked; }));
    later.join();
}

TEST_F(ImageLoading, APictureThatTakesLongHoldsNoOtherFetch) {
    if (!image(vectorNoise(9, 1))) GTEST_SKIP() << "this system has no decoder for vector images";
    const Scratch scratch;
    const std::string slow = scratch.file("slow.svg", vectorNoise(8000, 100));
    const BadServer server(
        [&](int connection, auto&) { sendAll(connection, answer("200 OK", "image/png", _png)); });
    CapturedOutput output;
    const auto began = std::chrono::steady_clock::now();
    getImageFromURLString(_view, URL::fileURLWithPath(slow).absoluteString());
    const auto other = std::make_shared<UIImageView>();
    getImageFromURLString(other, server.url());
    EXPECT_TRUE(platform::testing::waitFor([&] { return !output.lines().empty(); }));
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::milliseconds(1500));
    EXPECT_TRUE(platform::testing::waitFor([&] { return _view.use_count() == 1 && other.use_count() == 1; }));
    EXPECT_EQ(output.take(), Lines{Fetched});
    EXPECT_EQ(width(), 0);
    EXPECT_TRUE(other->image());
}

TEST_F(ImageLoading, TheScreenShowsWhatAnyThreadSets) {
    const platform::testing::ShownWindow window(60, 40);
    window.view->addSubview(_view);
    _view->setFrame({0, 0, 60, 40});
    const auto shown = [&] { return gtk_picture_get_paintable(GTK_PICTURE(widgetOf(*_view))); };
    const auto next = image(_png);
    std::thread([&] { _view->setImage(next); }).join();
    EXPECT_EQ(_view->image(), next);
    EXPECT_TRUE(platform::testing::waitFor([&] { return shown() == GDK_PAINTABLE(textureOf(*next)); }));
    _view->setImage(nullptr);
    EXPECT_TRUE(platform::testing::waitFor([&] { return shown() == nullptr; }));
}

} // namespace
