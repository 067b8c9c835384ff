// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A function that replaces the source of components, for tests. Any thread except the audio thread.
#pragma once

#include "platform/effects/ComponentProvider.hpp"

#include <memory>

namespace platform {

/// Replaces the component registry's provider; null restores the provider of LV2 plug-ins.
void setComponentProvider(std::shared_ptr<ComponentProvider> provider);

} // namespace platform
