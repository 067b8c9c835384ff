// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/toolkit/startToolkit.hpp"

#include "platform/foundation/ApplicationIdentity.hpp"
#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/translated.hpp"
#include "platform/ui/webSandbox.hpp"

#include <X11/Xlib.h>
#include <clocale>
#include <cstdlib>
#include <gtk/gtk.h>
#include <string>
#include <unistd.h>

namespace platform {

void startToolkit() {
    // Effects show their interfaces in X windows of this process. An interface that draws with OpenGL would
    // break GTK's drawing if GTK used OpenGL too. Without OpenGL, the first frame also appears in half the
    // time and the driver needs no memory.
    setenv("GDK_BACKEND", "x11", 1);
    setenv("GSK_RENDERER", "cairo", 1);
    setenv("GDK_DEBUG", "gl-disable", 0);
    // WebKit's sandbox is off for root: started by root, it leaves a file in the root directory that makes
    // other programs believe that the machine is a container.
    setenv(SandboxVariable, geteuid() == 0 ? "1" : "0", 0);
    XInitThreads();
    g_log_writer_default_set_use_stderr(TRUE);
    const ApplicationIdentity& program = applicationIdentity();
    g_set_prgname(program.programName.c_str());
    g_set_application_name(program.displayName.c_str());
    // Texts follow the user's locale. Numbers keep the decimal point, because effects parse and print
    // numbers.
    std::setlocale(LC_ALL, "");
    std::setlocale(LC_NUMERIC, "C");
    gtk_disable_setlocale();
    // The translations are in share/locale, beside the directory of the resources.
    if (const auto resources = Bundle::main().resourceURL()) {
        findTranslationsIn((resources->path() + "/../locale").c_str());
    }
    if (gtk_init_check() != FALSE) return;
    const char* display = std::getenv("DISPLAY");
    warn(program.programName + ": cannot open display" +
         (display == nullptr || *display == '\0' ? std::string(": DISPLAY is not set.")
                                                 : " \"" + std::string(display) + "\"."));
    std::exit(EXIT_FAILURE);
}

} // namespace platform
