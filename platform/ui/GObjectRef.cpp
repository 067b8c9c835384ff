// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/GObjectRef.hpp"

#include <glib-object.h>

namespace platform {

void* keepGObject(void* object) noexcept {
    return g_object_ref_sink(object);
}

void releaseGObject(void* object) noexcept {
    g_object_unref(object);
}

} // namespace platform
