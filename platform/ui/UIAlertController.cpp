// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIAlertController.hpp"

#include "platform/ui/detail/dialogWindow.hpp"

#include <algorithm>
#include <gtk/gtk.h>

namespace platform {
namespace {

constexpr int LongestText = 320;             // height in points; higher text scrolls
constexpr int WidestText = 480;              // points
constexpr std::size_t MostCharacters = 8000; // per title or message; longer ones take seconds to lay out

// Puts the text into a scrolled window. Otherwise GTK's dialog would grow with the text, and its buttons
// could leave the screen.
void makeScrollable(GtkWidget* textArea) {
    auto* box = GTK_BOX(gtk_widget_get_parent(textArea));
    GtkWidget* scroller = gtk_scrolled_window_new();
    auto* window = GTK_SCROLLED_WINDOW(scroller);
    gtk_scrolled_window_set_policy(window, GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    gtk_scrolled_window_set_propagate_natural_height(window, TRUE);
    gtk_scrolled_window_set_propagate_natural_width(window, TRUE);
    gtk_scrolled_window_set_max_content_height(window, LongestText);
    gtk_scrolled_window_set_max_content_width(window, WidestText);
    gtk_widget_set_hexpand(scroller, TRUE);
    g_object_ref(textArea);
    gtk_box_remove(box, textArea);
    gtk_scrolled_window_set_child(window, textArea);
    g_object_unref(textArea);
    gtk_box_append(box, scroller);
    for (GtkWidget* label = gtk_widget_get_first_child(textArea); label != nullptr;
         label = gtk_widget_get_next_sibling(label)) {
        if (!GTK_IS_LABEL(label)) continue;
        gtk_label_set_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR); // breaks long words too
    }
}

// With a button's built-in label, GTK 4.8 would report the title to assistive technology twice.
GtkWidget* makeButton(const std::string& title) {
    GtkWidget* button = gtk_button_new();
    GtkWidget* label = gtk_label_new(showableText(title).c_str());
    gtk_label_set_mnemonic_widget(GTK_LABEL(label), button); // names the button
    gtk_button_set_child(GTK_BUTTON(button), label);
    gtk_widget_add_css_class(button, "text-button");
    return button;
}

} // namespace

UIAlertAction::UIAlertAction(std::string title, UIAlertActionStyle style, Handler handler)
    : _title(std::move(title))
    , _style(style)
    , _handler(std::move(handler)) {}

std::shared_ptr<UIAlertAction> UIAlertAction::actionWithTitle(std::string title, UIAlertActionStyle style,
                                                              Handler handler) {
    return std::shared_ptr<UIAlertAction>(new UIAlertAction(std::move(title), style, std::move(handler)));
}

UIAlertController::UIAlertController(std::string title, std::string message)
    : _title(std::move(title))
    , _message(std::move(message)) {}

std::shared_ptr<UIAlertController>
UIAlertController::alertControllerWithTitle(std::string title, std::string message, UIAlertControllerStyle) {
    return std::shared_ptr<UIAlertController>(new UIAlertController(std::move(title), std::move(message)));
}

int UIAlertController::cancelIndex() const {
    const auto found = std::find_if(_actions.begin(), _actions.end(), [](const auto& action) {
        return action->style() == UIAlertActionStyle::Cancel;
    });
    return found == _actions.end() ? -1 : static_cast<int>(found - _actions.begin());
}

void UIAlertController::answer(int response) const {
    const int index = response == GTK_RESPONSE_DELETE_EVENT ? cancelIndex() : response;
    if (index < 0 || index >= static_cast<int>(_actions.size())) return;
    const auto action = _actions[static_cast<std::size_t>(index)]; // its handler may release this controller
    if (action->handler()) action->handler()(*action);
}

void UIAlertController::showOver(UIViewController& presenter, bool, std::function<void()> completion) {
    const std::string title = showableText(_title, MostCharacters);
    const std::string message = showableText(_message, MostCharacters);
    auto* widget =
        GTK_WIDGET(g_object_new(GTK_TYPE_MESSAGE_DIALOG, "accessible-role", GTK_ACCESSIBLE_ROLE_ALERT_DIALOG,
                                "message-type", GTK_MESSAGE_OTHER, "text", title.c_str(), "secondary-text",
                                _message.empty() ? nullptr : message.c_str(), "modal", TRUE,
                                "destroy-with-parent", TRUE, "transient-for", windowOf(presenter), nullptr));
    // GtkMessageDialog does not report its texts to assistive technology.
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   _title.empty() ? message.c_str() : title.c_str(),
                                   GTK_ACCESSIBLE_PROPERTY_DESCRIPTION, message.c_str(), -1);
    auto* dialog = GTK_DIALOG(widget);
    auto* messageDialog = GTK_MESSAGE_DIALOG(widget);
    makeScrollable(gtk_message_dialog_get_message_area(messageDialog));
    // The Return key presses the first button in the default style.
    int preferred = -1;
    for (int index = 0; const auto& action : _actions) {
        GtkWidget* button = makeButton(action->title());
        gtk_dialog_add_action_widget(dialog, button, index);
        if (action->style() == UIAlertActionStyle::Destructive) {
            gtk_widget_add_css_class(button, "destructive-action");
        }
        if (preferred < 0 && action->style() == UIAlertActionStyle::Default) preferred = index;
        ++index;
    }
    if (preferred >= 0) {
        gtk_dialog_set_default_response(dialog, preferred);
        gtk_window_set_focus(GTK_WINDOW(widget), gtk_dialog_get_widget_for_response(dialog, preferred));
    }

    using Self = std::shared_ptr<UIAlertController>;
    const auto onResponse = +[](GtkDialog* answered, int response, gpointer data) {
        const Self self = *static_cast<Self*>(data);
        gtk_window_destroy(GTK_WINDOW(answered));
        self->answer(response);
    };
    const auto release = +[](gpointer data, GClosure*) { delete static_cast<Self*>(data); };
    g_signal_connect_data(dialog, "response", G_CALLBACK(onResponse),
                          new Self(std::static_pointer_cast<UIAlertController>(shared_from_this())), release,
                          static_cast<GConnectFlags>(0));
    gtk_window_present(GTK_WINDOW(widget));
    callLater(std::move(completion));
}

} // namespace platform
