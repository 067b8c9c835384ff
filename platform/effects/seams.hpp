// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What this room takes from the outside, for tests that put something else there. Any thread but the audio
// thread.
#pragma once

#include "platform/effects/ComponentProvider.hpp"

#include <memory>

namespace platform {

/// Replaces the provider of the registry of components; null restores the real one.
void setComponentProvider(std::shared_ptr<ComponentProvider> provider);

} // namespace platform
