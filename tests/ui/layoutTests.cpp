// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Extensions/pinToSuperviewEdges.hpp"
#include "tests/ui/toolkitFixture.hpp"

namespace platform {
namespace {

using platform::testing::ShownWindow;
using tonewright::pinToSuperviewEdges;
using ViewTest = platform::testing::ToolkitTest;

// Returns the rectangle that GTK allocated to a view, relative to `ancestor`.
CGRect placeOnScreen(const UIView& view, const UIView& ancestor) {
    graphene_rect_t place;
    if (gtk_widget_compute_bounds(widgetOf(view), widgetOf(ancestor), &place) == FALSE) return {};
    return {place.origin.x, place.origin.y, place.size.width, place.size.height};
}

TEST_F(ViewTest, NegativeOriginsAndFractionsAreKept) {
    const ShownWindow shown(300, 500);
    const auto square = std::make_shared<UIView>();
    shown.view->addSubview(square);
    square->setFrame({-100, 0, 500, 500});
    EXPECT_EQ(square->frame(), (CGRect{-100, 0, 500, 500}));
    EXPECT_TRUE(platform::testing::waitFor([&] {
        return placeOnScreen(*square, *shown.view) == CGRect{-100, 0, 500, 500};
    }));
    square->setFrame({0.25, -0.75, 10.5, 20.5});
    EXPECT_EQ(square->frame(), (CGRect{0.25, -0.75, 10.5, 20.5}));
    EXPECT_EQ(square->bounds(), (CGRect{0, 0, 10.5, 20.5}));
    // NaN and infinity are stored and do not affect the screen.
    square->setFrame({std::nan(""), 0, std::nan(""), INFINITY});
    const int before = shown.controller->layouts;
    EXPECT_TRUE(platform::testing::waitFor([&] { return shown.controller->layouts > before; }));
    EXPECT_TRUE(std::isnan(square->frame().x));
}

TEST_F(ViewTest, MinimumSizeOfAChildPushesNothing) {
    const ShownWindow shown(200, 100);
    GtkWidget* large = gtk_label_new("wide");
    gtk_widget_set_size_request(large, 1000, 900);
    const auto child = viewWithWidget(large);
    shown.view->addSubview(child);
    pinToSuperviewEdges(*child);
    shown.resize(150, 80);
    EXPECT_EQ(child->frame(), (CGRect{0, 0, 150, 80}));
    EXPECT_EQ(shown.window->bounds(), (CGRect{0, 0, 150, 80}));
}

TEST_F(ViewTest, SingleEdgesMoveAViewAndKeepItsSize) {
    const auto parent = std::make_shared<UIView>(CGRect{0, 0, 100, 80});
    const auto child = std::make_shared<UIView>(CGRect{3, 4, 20, 10});
    parent->addSubview(child);
    child->setTranslatesAutoresizingMaskIntoConstraints(false);
    NSLayoutConstraint::activateConstraints(
        {child->bottomAnchor().constraintEqualToAnchor(parent->bottomAnchor()),
         child->trailingAnchor().constraintEqualToAnchor(parent->trailingAnchor())});
    EXPECT_EQ(child->frame(), (CGRect{80, 70, 20, 10}));
    gtk_widget_set_direction(widgetOf(*parent), GTK_TEXT_DIR_RTL);
    parent->setFrame({0, 0, 120, 80});
    EXPECT_EQ(child->frame(), (CGRect{0, 70, 20, 10})) << "the trailing edge is on the left now";
}

TEST_F(ViewTest, SuperviewKeepsItsSubviewsAndConstraintsEndWhenTheyLeave) {
    const auto first = std::make_shared<UIView>(CGRect{0, 0, 100, 80});
    const auto second = std::make_shared<UIView>(CGRect{0, 0, 50, 40});
    auto child = std::make_shared<UIView>(CGRect{1, 2, 3, 4});
    pinToSuperviewEdges(*child); // has no superview
    EXPECT_TRUE(child->translatesAutoresizingMaskIntoConstraints());
    EXPECT_EQ(child->frame(), (CGRect{1, 2, 3, 4}));
    first->addSubview(child);
    const auto top = child->topAnchor().constraintEqualToAnchor(first->topAnchor());
    NSLayoutConstraint::activateConstraints({top});
    EXPECT_TRUE(top->isActive());
    EXPECT_EQ(first->subviews(), std::vector{child});
    second->addSubview(child);
    EXPECT_FALSE(top->isActive());
    EXPECT_TRUE(first->subviews().empty());
    const std::weak_ptr<UIView> seen = child;
    child.reset();
    ASSERT_FALSE(seen.expired());
    EXPECT_EQ(seen.lock()->superview(), second);
    seen.lock()->removeFromSuperview();
    EXPECT_TRUE(seen.expired());
}

TEST_F(ViewTest, FramesSetWhileLayingOutTakeEffectInTheSameLayout) {
    const ShownWindow shown(300, 200);
    const auto child = std::make_shared<UIView>();
    shown.view->addSubview(child);
    shown.controller->onLayout = [&] {
        const CGRect bounds = shown.view->bounds();
        child->setFrame({bounds.width / 2, 0, bounds.width / 2, bounds.height});
    };
    shown.resize(420, 210);
    EXPECT_EQ(placeOnScreen(*child, *shown.view), (CGRect{210, 0, 210, 210}));
    shown.controller->onLayout = nullptr;
}

TEST_F(ViewTest, ConstraintOutsideTheSuperviewIsFatal) {
    const auto apart = [] {
        const auto view = std::make_shared<UIView>();
        const auto other = std::make_shared<UIView>();
        NSLayoutConstraint::activateConstraints(
            {view->topAnchor().constraintEqualToAnchor(other->topAnchor())});
    };
    EXPECT_DEATH(apart(), "needs a view and its superview");
}

} // namespace
} // namespace platform
