// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "MiniHost.hpp"

#include "effect/lv2/AtomSequence.hpp"
#include "effect/lv2/Uris.hpp"

#include <X11/Xutil.h>
#include <dlfcn.h>
#include <lv2/atom/atom.h>
#include <lv2/options/options.h>
#include <time.h>

#include <cstdlib>
#include <stdexcept>

namespace tonewright::effect::test {
namespace {

LV2_URID mapUri(LV2_URID_Map_Handle handle, const char* uri) {
    return (*static_cast<UridTable*>(handle))(uri);
}

void* openLibrary(const std::string& file) {
    void* library = dlopen(bundlePath(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        throw std::runtime_error{dlerror()};
    }
    return library;
}

constexpr std::uint32_t BufferBytes = 65536;

} // namespace

std::string bundlePath(const std::string& file) {
    const char* const build = std::getenv("TONEWRIGHT_BUILD_DIR");
    return std::string{build == nullptr ? "." : build} + "/lib/lv2/tonewright.lv2/" + file;
}

UridTable::UridTable()
    : map_{this, mapUri}
    , feature_{LV2_URID__map, &map_} {}

LV2_URID UridTable::operator()(const std::string& uri) {
    return numbers_.try_emplace(uri, static_cast<LV2_URID>(numbers_.size() + 1)).first->second;
}

PluginHost::PluginHost(UridTable& urids, double sampleRate, bool withUrids)
    : urids_{urids}
    , library_{openLibrary("tonewright.so")}
    , controlBuffer_(BufferBytes / 8)
    , notifyBuffer_(BufferBytes / 8)
    , notifyCapacity_{BufferBytes} {
    const auto entry = reinterpret_cast<LV2_Descriptor_Function>(dlsym(library_, "lv2_descriptor"));
    descriptor_ = entry(0);
    const LV2_Feature* const features[] = {withUrids ? urids.feature() : nullptr, nullptr};
    handle_ = descriptor_->instantiate(descriptor_, sampleRate, bundlePath("").c_str(), features);
    if (handle_ == nullptr) {
        throw std::runtime_error{"no instance"};
    }
    const auto defaults = defaultValues();
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        controls_[i] = defaults[i];
        descriptor_->connect_port(handle_, portOf(static_cast<Parameter>(i)), &controls_[i]);
    }
    descriptor_->connect_port(handle_, Latency, &latency_);
    descriptor_->connect_port(handle_, Control, controlBuffer_.data());
    descriptor_->connect_port(handle_, Notify, notifyBuffer_.data());
    descriptor_->activate(handle_);
}

PluginHost::~PluginHost() {
    descriptor_->cleanup(handle_);
    dlclose(library_);
}

void PluginHost::run(const float* left, const float* right, float* outLeft, float* outRight,
                     std::uint32_t frames, std::span<const TimedEvent> events) {
    auto* const control = reinterpret_cast<LV2_Atom_Sequence*>(controlBuffer_.data());
    auto* const notify = reinterpret_cast<LV2_Atom_Sequence*>(notifyBuffer_.data());
    control->atom.size = BufferBytes;
    AtomSequenceWriter writer{control, urids_(LV2_ATOM__Sequence)};
    for (const TimedEvent& event : events) {
        if (!writer.append(event.frame, event.type, event.body)) {
            throw std::runtime_error{"too many events for one block"};
        }
    }
    notify->atom = {notifyCapacity_, urids_(LV2_ATOM__Chunk)};
    // Beyond what the plug-in may use stands a mark that it must not touch.
    std::fill(notifyBuffer_.begin() + static_cast<std::ptrdiff_t>(firstWordBeyond()), notifyBuffer_.end(),
              0xA5A5A5A5A5A5A5A5ULL);
    descriptor_->connect_port(handle_, InputLeft, const_cast<float*>(left));
    descriptor_->connect_port(handle_, InputRight, const_cast<float*>(right));
    descriptor_->connect_port(handle_, OutputLeft, outLeft);
    descriptor_->connect_port(handle_, OutputRight, outRight);
    descriptor_->run(handle_, frames);
    collect();
}

void PluginHost::collect() {
    sent_.clear();
    const auto* const notify = reinterpret_cast<const LV2_Atom_Sequence*>(notifyBuffer_.data());
    for (auto i = firstWordBeyond(); i < notifyBuffer_.size(); ++i) {
        if (notifyBuffer_[i] != 0xA5A5A5A5A5A5A5A5ULL) {
            throw std::runtime_error{"the plug-in wrote beyond its buffer"};
        }
    }
    if (notify->atom.type != urids_(LV2_ATOM__Sequence)) {
        return;
    }
    if (notify->atom.size + sizeof(LV2_Atom) > notifyCapacity_) {
        throw std::runtime_error{"the sequence claims more than its buffer"};
    }
    forEachEvent(*notify, [this](std::int64_t frame, LV2_URID type, std::span<const std::uint8_t> body) {
        sent_.push_back({frame, type, {body.begin(), body.end()}});
    });
}

std::vector<std::vector<std::uint8_t>> PluginHost::atoms() const {
    std::vector<std::vector<std::uint8_t>> atoms;
    for (const TimedEvent& event : sent_) {
        const LV2_Atom head{static_cast<std::uint32_t>(event.body.size()), event.type};
        std::vector<std::uint8_t> atom(sizeof(head) + event.body.size());
        std::memcpy(atom.data(), &head, sizeof(head));
        std::memcpy(atom.data() + sizeof(head), event.body.data(), event.body.size());
        atoms.push_back(std::move(atom));
    }
    return atoms;
}

float PanelHost::Write::value() const {
    float number = 0.F;
    if (format == 0 && data.size() == sizeof(number)) {
        std::memcpy(&number, data.data(), sizeof(number));
    }
    return number;
}

PanelHost::PanelHost(UridTable& urids, Options options)
    : urids_{urids}
    , display_{XOpenDisplay(nullptr)} {
    if (display_ == nullptr) {
        throw std::runtime_error{"no display"};
    }
    const Window root = DefaultRootWindow(display_);
    parent_ = XCreateSimpleWindow(display_, root, 0, 0, 300, 200, 0, 0, 0);
    if (options.parentMapped) {
        XMapWindow(display_, parent_);
    }
    XSync(display_, False);

    library_ = openLibrary("tonewright_ui.so");
    const auto entry = reinterpret_cast<LV2UI_DescriptorFunction>(dlsym(library_, "lv2ui_descriptor"));
    descriptor_ = entry(0);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): LV2 hands an X window's number over as a pointer
    const LV2_Feature parentFeature{LV2_UI__parent, reinterpret_cast<void*>(parent_)};
    LV2UI_Resize resize{this, [](LV2UI_Feature_Handle self, int width, int height) {
                            auto& host = *static_cast<PanelHost*>(self);
                            host.askedWidth = width;
                            host.askedHeight = height;
                            return 0;
                        }};
    const LV2_Feature resizeFeature{LV2_UI__resize, &resize};
    const LV2_Options_Option optionList[] = {{LV2_OPTIONS_INSTANCE, 0, urids(LV2_UI__scaleFactor),
                                              sizeof(float), urids(LV2_ATOM__Float), &options.scaleFactor},
                                             {LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr}};
    const LV2_Feature optionsFeature{LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(optionList)};
    std::vector<const LV2_Feature*> features;
    const auto offer = [&features](bool offered, const LV2_Feature* feature) {
        if (offered) {
            features.push_back(feature);
        }
    };
    offer(options.withUrids, urids.feature());
    offer(options.withParent, &parentFeature);
    offer(options.withResize, &resizeFeature);
    offer(options.scaleFactor > 0.F, &optionsFeature);
    features.push_back(nullptr);
    const auto write = [](LV2UI_Controller self, std::uint32_t port, std::uint32_t size, std::uint32_t format,
                          const void* data) {
        const auto* const bytes = static_cast<const std::uint8_t*>(data);
        static_cast<PanelHost*>(self)->writes.push_back({port, format, {bytes, bytes + size}});
    };
    handle_ = descriptor_->instantiate(descriptor_, PluginUri, bundlePath("").c_str(), write, this, &widget_,
                                       features.data());
    if (handle_ == nullptr) {
        throw std::runtime_error{"no panel"};
    }
    idle_ = static_cast<const LV2UI_Idle_Interface*>(descriptor_->extension_data(LV2_UI__idleInterface));
    const auto defaults = defaultValues();
    for (std::size_t i = 0; i < ParameterCount; ++i) {
        send(static_cast<Parameter>(i), defaults[i]);
    }
}

PanelHost::~PanelHost() {
    descriptor_->cleanup(handle_);
    XCloseDisplay(display_);
    dlclose(library_);
}

int PanelHost::idle() {
    return idle_->idle(handle_);
}

void PanelHost::idleFor(double seconds) {
    timespec frame{0, 33'000'000};
    for (int i = 0; i < static_cast<int>(seconds * 30.) && idle() == 0; ++i) {
        nanosleep(&frame, nullptr);
    }
}

void PanelHost::send(Parameter parameter, float value) {
    descriptor_->port_event(handle_, portOf(parameter), sizeof(value), 0, &value);
}

void PanelHost::sendAtom(std::span<const std::uint8_t> atom) {
    descriptor_->port_event(handle_, Notify, static_cast<std::uint32_t>(atom.size()),
                            urids_(LV2_ATOM__eventTransfer), atom.data());
}

XEvent PanelHost::inputEvent(int type) const {
    XEvent event{};
    event.type = type;
    event.xany.window = window();
    return event;
}

void PanelHost::deliver(XEvent& event, long mask) {
    XSendEvent(display_, window(), False, mask, &event);
    XSync(display_, False);
}

void PanelHost::button(int type, int x, int y, unsigned button, unsigned state) {
    XEvent event = inputEvent(type);
    event.xbutton.x = x;
    event.xbutton.y = y;
    event.xbutton.button = button;
    event.xbutton.state = state;
    event.xbutton.time = time_ += 20;
    deliver(event, type == ButtonPress ? ButtonPressMask : ButtonReleaseMask);
}

void PanelHost::move(int x, int y, unsigned state) {
    XEvent event = inputEvent(MotionNotify);
    event.xmotion.x = x;
    event.xmotion.y = y;
    event.xmotion.state = state;
    deliver(event, PointerMotionMask);
}

void PanelHost::key(KeySym symbol, unsigned state) {
    XEvent event = inputEvent(KeyPress);
    event.xkey.keycode = XKeysymToKeycode(display_, symbol);
    event.xkey.state = state;
    deliver(event, KeyPressMask);
}

std::vector<std::uint32_t> PanelHost::picture() const {
    XWindowAttributes attributes{};
    XGetWindowAttributes(display_, window(), &attributes);
    XImage* const image = XGetImage(display_, window(), 0, 0, static_cast<unsigned>(attributes.width),
                                    static_cast<unsigned>(attributes.height), AllPlanes, ZPixmap);
    std::vector<std::uint32_t> pixels;
    for (int y = 0; image != nullptr && y < image->height; ++y) {
        for (int x = 0; x < image->width; ++x) {
            pixels.push_back(static_cast<std::uint32_t>(XGetPixel(image, x, y) & 0xFFFFFFU));
        }
    }
    if (image != nullptr) {
        XDestroyImage(image);
    }
    return pixels;
}

} // namespace tonewright::effect::test
