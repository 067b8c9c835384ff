// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIView.hpp"

#include "platform/foundation/fatal.hpp"
#include "platform/ui/detail/ViewImplementation.hpp"
#include "platform/ui/toolkit/ContainerWidget.hpp"
#include "platform/ui/toolkit/Placement.hpp"
#include "platform/ui/widgets.hpp"

#include <algorithm>
#include <gtk/gtk.h>
#include <memory>

namespace platform {
namespace {

GQuark viewKey() {
    static const GQuark key = g_quark_from_static_string("platform-uiview");
    return key;
}

bool hasFocusInside(GtkWidget* widget) {
    GtkRoot* root = gtk_widget_get_root(widget);
    GtkWidget* focus = root == nullptr ? nullptr : gtk_root_get_focus(root);
    return focus != nullptr && (focus == widget || gtk_widget_is_ancestor(focus, widget) != FALSE);
}

// Moves the focus to the first child of `parent` that accepts it.
void focusChildOf(GtkWidget* parent) {
    for (GtkWidget* child = gtk_widget_get_first_child(parent); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (gtk_widget_get_visible(child) != FALSE && gtk_widget_grab_focus(child) != FALSE) return;
    }
}

} // namespace

void UIView::ImplementationRelease::operator()(Implementation* implementation) const noexcept {
    delete implementation;
}

GtkWidget* widgetOf(const UIView& view) noexcept {
    return view.implementation().widget.get();
}

std::shared_ptr<UIView> viewOfWidget(GtkWidget* widget) {
    auto* view = static_cast<UIView*>(g_object_get_qdata(G_OBJECT(widget), viewKey()));
    return view == nullptr ? nullptr : std::static_pointer_cast<UIView>(view->weak_from_this().lock());
}

void fillWidget(GtkWidget* container, GtkWidget* content) {
    placementOf(content).fills = true;
    gtk_widget_set_parent(content, container);
    placeChildren(container);
}

UIView::UIView()
    : UIView(makeImplementation(GTK_WIDGET(g_object_new(containerWidgetType(), nullptr)))) {}

UIView::UIView(const CGRect& frame)
    : UIView() {
    setFrame(frame);
}

UIView::UIView(ImplementationPointer implementation)
    : _implementation(std::move(implementation)) {
    g_object_set_qdata(G_OBJECT(widgetOf(*this)), viewKey(), this);
}

UIView::~UIView() {
    g_object_set_qdata(G_OBJECT(widgetOf(*this)), viewKey(), nullptr);
}

bool UIView::isHidden() const {
    return gtk_widget_get_visible(widgetOf(*this)) == FALSE;
}

void UIView::setHidden(bool hidden) {
    GtkWidget* widget = widgetOf(*this);
    if (hidden == isHidden()) return;
    const bool hadFocus = hidden && hasFocusInside(widget);
    gtk_widget_set_visible(widget, hidden ? FALSE : TRUE);
    if (!hadFocus) return;
    // The focus moves in the next iteration of the main loop, because the view that replaces this one may be
    // shown only after this call. It moves before any other source is dispatched, because the next key press
    // must go to the new focus and because GTK would move the focus itself when it draws the next frame.
    using WeakView = std::weak_ptr<UIResponder>;
    g_idle_add_full(
        G_PRIORITY_HIGH,
        [](gpointer place) -> gboolean {
            const auto view = std::static_pointer_cast<UIView>(static_cast<WeakView*>(place)->lock());
            GtkWidget* parent = view ? gtk_widget_get_parent(widgetOf(*view)) : nullptr;
            if (parent != nullptr && view->isHidden()) focusChildOf(parent);
            return G_SOURCE_REMOVE;
        },
        std::make_unique<WeakView>(weak_from_this()).release(),
        [](gpointer place) { delete static_cast<WeakView*>(place); });
}

CGRect UIView::frame() const {
    GtkWidget* widget = widgetOf(*this);
    GtkWidget* parent = gtk_widget_get_parent(widget);
    if (isContainerWidget(parent) || (parent == nullptr && !GTK_IS_ROOT(widget))) {
        return placementOf(widget).frame;
    }
    const auto holder = superview();
    graphene_rect_t place;
    if (holder && gtk_widget_compute_bounds(widget, widgetOf(*holder), &place) != FALSE) {
        return {place.origin.x, place.origin.y, place.size.width, place.size.height};
    }
    return bounds();
}

void UIView::setFrame(const CGRect& frame) {
    GtkWidget* widget = widgetOf(*this);
    Placement& placement = placementOf(widget);
    placement.frame = frame;
    placement.fills = false;
    if (isContainerWidget(widget)) placeChildren(widget);
    GtkWidget* parent = gtk_widget_get_parent(widget);
    if (isContainerWidget(parent)) queuePlacing(parent);
}

CGRect UIView::bounds() const {
    const ContainerSize size = sizeOf(widgetOf(*this));
    return {0, 0, size.width, size.height};
}

void UIView::addSubview(const std::shared_ptr<UIView>& view) {
    GtkWidget* widget = widgetOf(*this);
    if (!isContainerWidget(widget)) fatal("A view of this kind cannot hold subviews");
    view->removeFromSuperview();
    gtk_widget_set_parent(widgetOf(*view), widget);
    _implementation->kept.push_back(view);
    placeChildren(widget);
}

void UIView::removeFromSuperview() {
    GtkWidget* widget = widgetOf(*this);
    GtkWidget* parent = gtk_widget_get_parent(widget);
    if (!isContainerWidget(parent)) return;
    const auto self =
        std::static_pointer_cast<UIView>(shared_from_this()); // the superview may be the only owner
    if (const auto holder = viewOfWidget(parent)) std::erase(holder->implementation().kept, self);
    gtk_widget_unparent(widget);
    placementOf(widget).constraints = {};
}

std::shared_ptr<UIView> UIView::superview() const {
    for (GtkWidget* parent = gtk_widget_get_parent(widgetOf(*this)); parent != nullptr;
         parent = gtk_widget_get_parent(parent)) {
        if (auto view = viewOfWidget(parent)) return view;
    }
    return nullptr;
}

std::vector<std::shared_ptr<UIView>> UIView::subviews() const {
    std::vector<std::shared_ptr<UIView>> views;
    for (GtkWidget* child = gtk_widget_get_first_child(widgetOf(*this)); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (auto view = viewOfWidget(child)) views.push_back(std::move(view));
    }
    return views;
}

void UIView::setNeedsDisplay() {
    gtk_widget_queue_draw(widgetOf(*this));
}

bool UIView::translatesAutoresizingMaskIntoConstraints() const {
    return placementOf(widgetOf(*this)).translatesAutoresizingMask;
}

void UIView::setTranslatesAutoresizingMaskIntoConstraints(bool translates) {
    GtkWidget* widget = widgetOf(*this);
    placementOf(widget).translatesAutoresizingMask = translates;
    GtkWidget* parent = gtk_widget_get_parent(widget);
    if (isContainerWidget(parent)) placeChildren(parent);
}

NSLayoutAnchor UIView::topAnchor() {
    return {std::static_pointer_cast<UIView>(shared_from_this()), LayoutEdge::Top};
}

NSLayoutAnchor UIView::leadingAnchor() {
    return {std::static_pointer_cast<UIView>(shared_from_this()), LayoutEdge::Leading};
}

NSLayoutAnchor UIView::bottomAnchor() {
    return {std::static_pointer_cast<UIView>(shared_from_this()), LayoutEdge::Bottom};
}

NSLayoutAnchor UIView::trailingAnchor() {
    return {std::static_pointer_cast<UIView>(shared_from_this()), LayoutEdge::Trailing};
}

std::shared_ptr<UIResponder> UIView::nextResponder() {
    return superview();
}

} // namespace platform
