// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIDocumentPickerViewController.hpp"

#include "platform/foundation/translated.hpp"
#include "platform/ui/GObjectRef.hpp"
#include "platform/ui/detail/dialogWindow.hpp"

#include <algorithm>
#include <gtk/gtk.h>

namespace platform {
namespace {

constexpr const char* FolderType = "public.folder";

// A file on a mounted server may have no path, only a URL.
std::optional<URL> urlOf(GFile* file) {
    const std::unique_ptr<char, decltype(&g_free)> path(g_file_get_path(file), &g_free);
    if (path) return URL::fileURLWithPath(path.get());
    const std::unique_ptr<char, decltype(&g_free)> text(g_file_get_uri(file), &g_free);
    return URL::fromString(text.get());
}

std::vector<URL> chosenIn(GtkFileChooser* chooser) {
    std::vector<URL> urls;
    const auto files = GObjectRef<GListModel>::adopt(gtk_file_chooser_get_files(chooser));
    const guint count = files ? g_list_model_get_n_items(files.get()) : 0;
    for (guint index = 0; index < count; ++index) {
        const auto file = GObjectRef<GFile>::adopt(G_FILE(g_list_model_get_item(files.get(), index)));
        if (auto url = urlOf(file.get())) urls.push_back(std::move(*url));
    }
    return urls;
}

} // namespace

struct UIDocumentPickerViewController::Chooser {
    GObjectRef<GtkFileChooserNative> dialog;
};

UIDocumentPickerViewController::UIDocumentPickerViewController(const std::vector<std::string>& documentTypes,
                                                               UIDocumentPickerMode)
    : _picksFolders(std::find(documentTypes.begin(), documentTypes.end(), FolderType) !=
                    documentTypes.end()) {}

UIDocumentPickerViewController::~UIDocumentPickerViewController() = default;

void UIDocumentPickerViewController::answer(const std::vector<URL>& chosen) {
    const auto delegate = _delegate.lock();
    if (!delegate) return;
    if (chosen.empty()) {
        delegate->documentPickerWasCancelled(*this);
    } else {
        delegate->documentPicker(*this, chosen);
    }
}

void UIDocumentPickerViewController::showOver(UIViewController& presenter, bool,
                                              std::function<void()> completion) {
    auto* dialog = gtk_file_chooser_native_new(
        _picksFolders ? translated("Choose a Folder") : translated("Choose a File"), windowOf(presenter),
        _picksFolders ? GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER : GTK_FILE_CHOOSER_ACTION_OPEN,
        translated("_Choose"), translated("_Cancel"));
    gtk_native_dialog_set_modal(GTK_NATIVE_DIALOG(dialog), TRUE);
    gtk_file_chooser_set_select_multiple(GTK_FILE_CHOOSER(dialog), _allowsMultipleSelection ? TRUE : FALSE);
    _chooser = std::make_unique<Chooser>(Chooser{GObjectRef<GtkFileChooserNative>::adopt(dialog)});

    using Self = std::shared_ptr<UIDocumentPickerViewController>;
    const auto onResponse = +[](GtkNativeDialog* answered, int response, gpointer data) {
        const Self self = *static_cast<Self*>(data);
        const auto chosen =
            response == GTK_RESPONSE_ACCEPT ? chosenIn(GTK_FILE_CHOOSER(answered)) : std::vector<URL>();
        gtk_native_dialog_hide(answered);
        self->_chooser.reset(); // the signal emission holds a reference to the dialog
        self->answer(chosen);
    };
    const auto release = +[](gpointer data, GClosure*) { delete static_cast<Self*>(data); };
    g_signal_connect_data(
        dialog, "response", G_CALLBACK(onResponse),
        new Self(std::static_pointer_cast<UIDocumentPickerViewController>(shared_from_this())), release,
        static_cast<GConnectFlags>(0));
    gtk_native_dialog_show(GTK_NATIVE_DIALOG(dialog));
    callLater(std::move(completion));
}

} // namespace platform
