// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A notice that a page is being loaded. It is shown in front of the empty page if loading takes more than
// half a second. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

class WorkingNotice {
  public:
    /// The notice will appear in `container`, in front of its other children. `container` must outlive this
    /// object.
    explicit WorkingNotice(GtkWidget* container)
        : _container(container) {}
    ~WorkingNotice() { end(); }
    WorkingNotice(const WorkingNotice&) = delete;
    WorkingNotice& operator=(const WorkingNotice&) = delete;

    /// Shows the notice after half a second, unless `end` is called before.
    void begin();
    void end();

  private:
    void appear();

    GtkWidget* _container;
    GtkWidget* _notice = nullptr; // owned by the container; null while not shown
    guint _source = 0;            // GLib source that will show the notice, or 0
};

} // namespace platform
