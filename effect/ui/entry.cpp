// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The entry point of the panel's library: LV2's C interface for user interfaces to PanelWindow. No exception
// may leave these functions.

#include "PanelWindow.hpp"
#include "effect/lv2/DisplayMessage.hpp"
#include "effect/lv2/Ports.hpp"
#include "effect/lv2/Uris.hpp"

#include <lv2/core/lv2.h>
#include <lv2/core/lv2_util.h>
#include <lv2/options/options.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <memory>
#include <optional>

namespace {

using namespace tonewright::effect;

/// An open panel.
struct PanelInstance {
    LV2UI_Write_Function writeFunction = nullptr;
    LV2UI_Controller controller = nullptr;
    const LV2UI_Touch* touch = nullptr;
    std::optional<DisplayUrids> urids;
    std::unique_ptr<PanelWindow> window;
    double lastRequest = -10.;

    void write(Parameter parameter, float value) const {
        writeFunction(controller, portOf(parameter), sizeof(float), 0, &value);
    }

    void gesture(Parameter parameter, bool begins) const {
        if (touch != nullptr) {
            touch->touch(touch->handle, portOf(parameter), begins);
        }
    }

    // Requests display frames if the panel is visible and the last request is old enough. Called repeatedly.
    void requestDisplay() {
        const double now = steadySeconds();
        if (urids && window->isVisible() && now - lastRequest >= DisplayRequestSeconds) {
            lastRequest = now;
            const DisplayRequest request = DisplayRequest::of(*urids);
            writeFunction(controller, Control, sizeof(request), urids->eventTransfer, &request);
        }
    }
};

PanelInstance& instance(LV2UI_Handle handle) noexcept {
    return *static_cast<PanelInstance*>(handle);
}

double scaleFactorOf(const LV2_Options_Option* options, const LV2_URID_Map* map) {
    if (options == nullptr || map == nullptr) {
        return 1.;
    }
    const LV2_URID scaleFactor = map->map(map->handle, LV2_UI__scaleFactor);
    const LV2_URID atomFloat = map->map(map->handle, LV2_ATOM__Float);
    for (const LV2_Options_Option* option = options; option->key != 0 || option->value != nullptr; ++option) {
        if (option->key == scaleFactor && option->type == atomFloat && option->size == sizeof(float)) {
            float value = 1.F;
            std::memcpy(&value, option->value, sizeof(value));
            return value >= 0.5F && value <= 8.F ? static_cast<double>(value) : 1.;
        }
    }
    return 1.;
}

LV2UI_Handle instantiate(const LV2UI_Descriptor*, const char* pluginUri, const char*,
                         LV2UI_Write_Function writeFunction, LV2UI_Controller controller,
                         LV2UI_Widget* widget, const LV2_Feature* const* features) {
    if (std::strcmp(pluginUri, PluginUri) != 0 || widget == nullptr || writeFunction == nullptr) {
        return nullptr;
    }
    const auto feature = [features](const char* uri) {
        return features == nullptr ? nullptr : lv2_features_data(features, uri);
    };
    try {
        auto panel = std::make_unique<PanelInstance>();
        panel->writeFunction = writeFunction;
        panel->controller = controller;
        panel->touch = static_cast<const LV2UI_Touch*>(feature(LV2_UI__touch));
        const auto* const map = static_cast<const LV2_URID_Map*>(feature(LV2_URID__map));
        if (map != nullptr) {
            panel->urids = DisplayUrids::mapped(*map);
        }
        PanelInstance* const self = panel.get();
        panel->window = PanelWindow::open(
            {.parent = reinterpret_cast<Window>(feature(LV2_UI__parent)),
             .scaleFactor =
                 scaleFactorOf(static_cast<const LV2_Options_Option*>(feature(LV2_OPTIONS__options)), map),
             .actions = {.write = [self](Parameter p, float value) { self->write(p, value); },
                         .touch = [self](Parameter p, bool begins) { self->gesture(p, begins); }}});
        if (!panel->window) {
            return nullptr;
        }
        // NOLINTNEXTLINE(performance-no-int-to-ptr): LV2 passes the ID of an X window as a pointer
        *widget = reinterpret_cast<LV2UI_Widget>(panel->window->window());
        const auto* const resize = static_cast<const LV2UI_Resize*>(feature(LV2_UI__resize));
        if (resize != nullptr && resize->ui_resize != nullptr) {
            resize->ui_resize(resize->handle, panel->window->width(), panel->window->height());
        }
        return panel.release();
    } catch (const std::exception&) {
        return nullptr;
    }
}

void cleanup(LV2UI_Handle handle) {
    const std::unique_ptr<PanelInstance> last{&instance(handle)};
}

void portEvent(LV2UI_Handle handle, std::uint32_t port, std::uint32_t size, std::uint32_t format,
               const void* buffer) {
    PanelInstance& panel = instance(handle);
    if (format == 0 && size == sizeof(float) && port >= FirstParameter && port < PortCount) {
        float value = 0.F;
        std::memcpy(&value, buffer, sizeof(value));
        panel.window->panel().showValue(static_cast<Parameter>(port - FirstParameter), value);
    } else if (port == Notify && panel.urids && format == panel.urids->eventTransfer) {
        if (const auto frame = DisplayMessage::read(buffer, size, *panel.urids)) {
            panel.window->panel().showFrame(*frame);
        }
    }
}

int idle(LV2UI_Handle handle) {
    PanelInstance& panel = instance(handle);
    if (!panel.window->idle()) {
        return 1;
    }
    panel.requestDisplay();
    return 0;
}

int resize(LV2UI_Feature_Handle handle, int width, int height) {
    instance(handle).window->resize(width, height);
    return 0;
}

const void* extensionData(const char* uri) {
    static const LV2UI_Idle_Interface idleInterface{idle};
    static const LV2UI_Resize resizeInterface{nullptr, resize};
    if (std::strcmp(uri, LV2_UI__idleInterface) == 0) {
        return &idleInterface;
    }
    return std::strcmp(uri, LV2_UI__resize) == 0 ? &resizeInterface : nullptr;
}

const LV2UI_Descriptor Descriptor{PanelUri, instantiate, cleanup, portEvent, extensionData};

} // namespace

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index) {
    return index == 0 ? &Descriptor : nullptr;
}
