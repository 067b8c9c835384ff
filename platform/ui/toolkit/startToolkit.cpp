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
    // Effects bring interfaces of their own as X windows in this process. One that draws with GL breaks the
    // drawing of a toolkit that does so too. Not even asking whether GL is there also halves the time to the
    // first frame and saves the memory of its driver.
    setenv("GDK_BACKEND", "x11", 1);
    setenv("GSK_RENDERER", "cairo", 1);
    setenv("GDK_DEBUG", "gl-disable", 0);
    // The web engine's sandbox is for users: run as root it leaves a file in the root directory that makes
    // other programs take the machine for a container.
    setenv(SandboxVariable, geteuid() == 0 ? "1" : "0", 0);
    XInitThreads();
    g_log_writer_default_set_use_stderr(TRUE);
    const ApplicationIdentity& program = applicationIdentity();
    g_set_prgname(program.programName.c_str());
    g_set_application_name(program.displayName.c_str());
    // Texts follow the user's locale; numbers stay as programs write them, for effects that read and print
    // them.
    std::setlocale(LC_ALL, "");
    std::setlocale(LC_NUMERIC, "C");
    gtk_disable_setlocale();
    // Translations lie beside the resources: share/locale.
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
