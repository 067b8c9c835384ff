// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/toolkit/DrawingWidget.hpp"

#include "platform/foundation/product.hpp"
#include "platform/ui/detail/CanvasTarget.hpp"

#include <cmath>
#include <memory>

namespace platform {
namespace {

struct NodeRelease {
    void operator()(GskRenderNode* node) const noexcept { gsk_render_node_unref(node); }
};
using Node = std::unique_ptr<GskRenderNode, NodeRelease>;

// The picture as it was last drawn, with the size, scale and text colour for which it was drawn.
struct Picture {
    Node node;
    int width = 0;
    int height = 0;
    int scale = 0;
    Color textColor;

    [[nodiscard]] bool isFor(const Picture& other) const {
        return node && width == other.width && height == other.height && scale == other.scale &&
               textColor == other.textColor;
    }
};

struct DrawingWidget {
    GtkWidget base;
    DrawingContent* content;
    Picture* picture;
};

struct DrawingWidgetClass {
    GtkWidgetClass base;
};

gpointer parentClass = nullptr;

DrawingWidget* selfOf(gpointer instance) {
    return static_cast<DrawingWidget*>(instance);
}

Color textColorOf(GtkWidget* widget) {
    GdkRGBA color;
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS // its successor was added in GTK 4.10
        gtk_style_context_get_color(gtk_widget_get_style_context(widget), &color);
    G_GNUC_END_IGNORE_DEPRECATIONS
    return {static_cast<double>(color.red), static_cast<double>(color.green), static_cast<double>(color.blue),
            static_cast<double>(color.alpha)};
}

graphene_rect_t rectangle(double x, double y, double width, double height) {
    graphene_rect_t result;
    graphene_rect_init(&result, static_cast<float>(x), static_cast<float>(y), static_cast<float>(width),
                       static_cast<float>(height));
    return result;
}

// Draws the picture once into an image. Each frame copies only the areas around moved marks from the image.
void drawPicture(GtkWidget* widget, const std::function<void(Canvas&)>& draw, Picture& picture) {
    cairo_surface_t* image = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, picture.width * picture.scale,
                                                        picture.height * picture.scale);
    cairo_surface_set_device_scale(image, picture.scale, picture.scale);
    cairo_t* cairo = cairo_create(image);
    Canvas::Target target{widget, cairo, static_cast<double>(picture.width),
                          static_cast<double>(picture.height), picture.textColor};
    Canvas canvas(target);
    if (draw) draw(canvas);
    cairo_destroy(cairo);
    const graphene_rect_t bounds = rectangle(0, 0, picture.width, picture.height);
    picture.node.reset(gsk_cairo_node_new(&bounds));
    cairo_t* recorded = gsk_cairo_node_get_draw_context(picture.node.get());
    cairo_set_source_surface(recorded, image, 0, 0);
    cairo_paint(recorded);
    cairo_destroy(recorded);
    cairo_surface_destroy(image);
}

void appendMark(GtkSnapshot* snapshot, const Mark& mark) {
    const CGRect& place = mark.place;
    if (!std::isfinite(place.x + place.y + place.width + place.height + mark.radius)) return;
    const graphene_rect_t bounds = rectangle(place.x, place.y, place.width, place.height);
    const GdkRGBA color = {static_cast<float>(mark.color.red), static_cast<float>(mark.color.green),
                           static_cast<float>(mark.color.blue), static_cast<float>(mark.color.alpha)};
    if (mark.radius <= 0) {
        gtk_snapshot_append_color(snapshot, &color, &bounds);
        return;
    }
    GskRoundedRect rounded;
    gsk_rounded_rect_init_from_rect(&rounded, &bounds, static_cast<float>(mark.radius));
    gtk_snapshot_push_rounded_clip(snapshot, &rounded);
    gtk_snapshot_append_color(snapshot, &color, &bounds);
    gtk_snapshot_pop(snapshot);
}

void snapshotWidget(GtkWidget* widget, GtkSnapshot* snapshot) {
    DrawingWidget* self = selfOf(widget);
    Picture wanted{nullptr, gtk_widget_get_width(widget), gtk_widget_get_height(widget),
                   gtk_widget_get_scale_factor(widget), textColorOf(widget)};
    if (wanted.width <= 0 || wanted.height <= 0) return;
    if (self->content->isOutdated || !self->picture->isFor(wanted)) {
        self->content->isOutdated = false;
        const auto draw = self->content->draw; // a copy: the call may replace the function
        drawPicture(widget, draw, wanted);
        *self->picture = std::move(wanted);
    }
    gtk_snapshot_append_node(snapshot, self->picture->node.get());
    for (const Mark& mark : self->content->marks) appendMark(snapshot, mark);
}

void initialise(GTypeInstance* instance, gpointer) {
    auto* self = reinterpret_cast<DrawingWidget*>(instance);
    self->content = new DrawingContent;
    self->picture = new Picture;
    gtk_widget_set_overflow(GTK_WIDGET(instance), GTK_OVERFLOW_HIDDEN);
}

void finalise(GObject* object) {
    delete selfOf(object)->content;
    delete selfOf(object)->picture;
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initialiseClass(gpointer klass, gpointer) {
    parentClass = g_type_class_peek_parent(klass);
    static_cast<GObjectClass*>(klass)->finalize = finalise;
    auto* widgetClass = static_cast<GtkWidgetClass*>(klass);
    widgetClass->snapshot = snapshotWidget;
    gtk_widget_class_set_css_name(widgetClass, "drawing");
    gtk_widget_class_set_accessible_role(widgetClass, GTK_ACCESSIBLE_ROLE_IMG);
}

} // namespace

GType drawingWidgetType() {
    static const GType type = g_type_register_static_simple(
        GTK_TYPE_WIDGET, product::DrawingType, sizeof(DrawingWidgetClass), initialiseClass,
        sizeof(DrawingWidget), initialise, static_cast<GTypeFlags>(0));
    return type;
}

bool isDrawingWidget(GtkWidget* widget) {
    return widget != nullptr && G_TYPE_CHECK_INSTANCE_TYPE(widget, drawingWidgetType());
}

DrawingContent& contentOf(GtkWidget* widget) {
    return *selfOf(widget)->content;
}

} // namespace platform
