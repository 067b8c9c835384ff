// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the pixels that GTK renders for a drawing view.
#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/ui/Canvas.hpp"
#include "platform/ui/GObjectRef.hpp"
#include "platform/ui/UIDrawingView.hpp"
#include "tests/ui/toolkitFixture.hpp"

namespace platform {
namespace {

using platform::testing::ShownWindow;
using platform::testing::waitFor;
using DrawingTest = platform::testing::ToolkitTest;

constexpr Color Red{1, 0, 0, 1};
constexpr Color Blue{0, 0, 1, 1};

// The pixels of a view, rendered as for the screen.
class Pixels {
  public:
    explicit Pixels(const UIView& view) {
        GtkWidget* widget = widgetOf(view);
        gtk_test_widget_wait_for_draw(widget); // the next frame shows the latest changes
        _width = gtk_widget_get_width(widget);
        _height = gtk_widget_get_height(widget);
        const auto paintable = GObjectRef<GdkPaintable>::adopt(gtk_widget_paintable_new(widget));
        GtkSnapshot* snapshot = gtk_snapshot_new();
        gdk_paintable_snapshot(paintable.get(), snapshot, _width, _height);
        GskRenderNode* node = gtk_snapshot_free_to_node(snapshot);
        if (node == nullptr) return;
        graphene_rect_t whole;
        graphene_rect_init(&whole, 0, 0, static_cast<float>(_width), static_cast<float>(_height));
        const auto texture = GObjectRef<GdkTexture>::adopt(gsk_renderer_render_texture(
            gtk_native_get_renderer(gtk_widget_get_native(widget)), node, &whole));
        gsk_render_node_unref(node);
        _stride = std::size_t{4} * static_cast<std::size_t>(_width);
        _bytes.resize(_stride * static_cast<std::size_t>(_height));
        gdk_texture_download(texture.get(), _bytes.data(), _stride);
    }

    /// Returns the colour of a pixel; all components are -1 outside the picture.
    [[nodiscard]] Color at(int x, int y) const {
        const auto place =
            static_cast<std::size_t>(y) * _stride + std::size_t{4} * static_cast<std::size_t>(x);
        if (place + 3 >= _bytes.size()) return {-1, -1, -1, -1};
        return {_bytes[place + 2] / 255.0, _bytes[place + 1] / 255.0, _bytes[place] / 255.0,
                _bytes[place + 3] / 255.0};
    }

  private:
    int _width = 0, _height = 0;
    std::size_t _stride = 0;
    std::vector<guchar> _bytes;
};

constexpr Color Nothing{0, 0, 0, 0};

struct ShownDrawing {
    explicit ShownDrawing(const UIDrawingView::Drawing& draw) {
        view->setDrawing([this, draw](Canvas& canvas) {
            ++drawn;
            draw(canvas);
        });
        view->setFrame({0, 0, 100, 80});
        shown.view->addSubview(view);
        waitDrawn(1);
    }
    void waitDrawn(int times) const {
        EXPECT_TRUE(waitFor([&] { return drawn >= times; }));
        EXPECT_EQ(drawn, times);
    }
    int drawn = 0;
    ShownWindow shown{300, 200};
    std::shared_ptr<UIDrawingView> view = std::make_shared<UIDrawingView>();
};

TEST_F(DrawingTest, ShapesLieWhereTheyWereDrawn) {
    const ShownDrawing drawing([](Canvas& canvas) {
        EXPECT_EQ((CGRect{0, 0, canvas.width(), canvas.height()}), (CGRect{0, 0, 100, 80}));
        canvas.fillRectangle({10, 20, 30, 10}, Red);
        canvas.fillCircle({70, 40}, 10, Blue);
        const std::array line = {Point{0, 70}, Point{50, 70}, Point{50, 60}};
        canvas.strokeLine(line, 4, Red);
        canvas.strokeRectangle({60, 60, 20, 10}, 2, Blue);
        canvas.fillRectangle({NAN, 0, 100, 100}, Blue); // draws nothing and does not affect later calls
        canvas.fillRectangle({95, 0, 50, 5}, Red);
    });
    const Pixels pixels(*drawing.view);
    const std::pair<Color, std::vector<std::pair<int, int>>> expected[] = {
        {Red, {{10, 20}, {39, 29}, {25, 70}, {50, 65}, {97, 2}}},
        {Blue, {{70, 40}, {78, 40}, {60, 65}}},
        {Nothing, {{9, 25}, {40, 25}, {10, 30}, {78, 48}, {25, 75}, {70, 65}}}};
    for (const auto& [color, places] : expected) {
        for (const auto& [x, y] : places) EXPECT_EQ(pixels.at(x, y), color) << x << ", " << y;
    }
}

TEST_F(DrawingTest, TextIsWrittenInItsPlace) {
    const ShownDrawing drawing([](Canvas& canvas) {
        canvas.drawText("mmmmmmmmmmmmmmmmmmmmmmmmmmmm", {20, 10, 40, 20}, 12, Red, TextAlignment::Center);
        const std::array line = {Point{90, 70}, Point{90, 78}};
        canvas.strokeLine(line, 2, Red); // does not continue from the text's position
    });
    const Pixels pixels(*drawing.view);
    int inside = 0, outside = 0;
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 100; ++x) {
            if (pixels.at(x, y).alpha > 0.1) ++(x >= 19 && x <= 61 && y >= 8 && y <= 32 ? inside : outside);
        }
    }
    EXPECT_GT(inside, 40);
    EXPECT_EQ(outside, 0) << "the text is shortened and does not overflow";
}

TEST_F(DrawingTest, MarksMoveInFrontOfAPictureThatIsNotDrawnAgain) {
    const ShownDrawing drawing([](Canvas& canvas) { canvas.fillRectangle({0, 0, 100, 80}, Red); });
    drawing.view->setMarks({dotAt({20, 20}, 5, Blue), {{50, 50, 10, 4}, 0, Blue}});
    const Pixels first(*drawing.view);
    EXPECT_EQ(first.at(20, 20), Blue);
    EXPECT_EQ(first.at(59, 53), Blue);
    EXPECT_EQ(first.at(15, 15), Red) << "the corner of a dot";
    drawing.view->setMarks({dotAt({60, 20}, 5, Blue), {{NAN, 0, 1, 1}, 0, Blue}});
    const Pixels second(*drawing.view);
    EXPECT_EQ(second.at(20, 20), Red);
    EXPECT_EQ(second.at(59, 53), Red);
    EXPECT_EQ(second.at(60, 20), Blue);
    EXPECT_EQ(drawing.drawn, 1);
}

TEST_F(DrawingTest, PictureIsDrawnAnewForAnotherSizeAndOtherColours) {
    double brightness = -1;
    const ShownDrawing drawing([&](Canvas& canvas) { brightness = canvas.textColor().green; });
    EXPECT_LT(brightness, 0.5);
    drawing.view->setFrame({0, 0, 120, 90});
    drawing.waitDrawn(2);
    GtkSettings* settings = gtk_settings_get_default();
    g_object_set(settings, "gtk-application-prefer-dark-theme", TRUE, nullptr);
    EXPECT_TRUE(waitFor([&] { return brightness > 0.5; })) << "light text on a dark desktop";
    g_object_set(settings, "gtk-application-prefer-dark-theme", FALSE, nullptr);
    EXPECT_TRUE(waitFor([&] { return brightness < 0.5; }));
}

// Tests tasks submitted together, and tasks submitted by the previous task.
TEST_F(DrawingTest, TasksOfTheMainQueueLeaveTimeForPainting) {
    constexpr int Tasks = 1000; // each takes a millisecond
    for (const bool together : {true, false}) {
        const ShownDrawing drawing([](Canvas&) {});
        int ran = 0;
        std::function<void()> task = [&] {
            drawing.view->setNeedsDisplay();
            const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(1);
            while (std::chrono::steady_clock::now() < end) {
            }
            if (++ran < Tasks && !together) DispatchQueue::main().async(task);
        };
        for (int i = 0; i < (together ? Tasks : 1); ++i) DispatchQueue::main().async(task);
        EXPECT_TRUE(waitFor([&] { return ran == Tasks; }));
        EXPECT_GE(drawing.drawn, 20) << (together ? "together" : "one by one");
    }
}

} // namespace
} // namespace platform
