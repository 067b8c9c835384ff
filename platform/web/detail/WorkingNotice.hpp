// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A notice, over an empty page, that a page is being loaded, shown once that takes long enough for a person
// to wonder. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

class WorkingNotice {
  public:
    /// Appears in `container`, which outlives the notice, on top of its contents.
    explicit WorkingNotice(GtkWidget* container)
        : _container(container) {}
    ~WorkingNotice() { end(); }
    WorkingNotice(const WorkingNotice&) = delete;
    WorkingNotice& operator=(const WorkingNotice&) = delete;

    /// Appears in half a second unless `end` is called before.
    void begin();
    void end();

  private:
    void appear();

    GtkWidget* _container;
    GtkWidget* _notice = nullptr; // on the screen; belongs to the container
    guint _source = 0;            // the wait for it
};

} // namespace platform
