// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs an interface in its process, and exchanges values and events with the host. One thread; the interface
// may have others.
#pragma once

#include "platform/effects/child/InterfaceToolkit.hpp"
#include "platform/effects/lv2/BundleIndex.hpp"
#include "platform/effects/process/MessageMemory.hpp"
#include "platform/effects/process/interfacePackets.hpp"
#include "platform/effects/running/InterfaceHost.hpp"

#include <chrono>
#include <string>
#include <vector>

namespace platform::lv2 {

class InterfaceServer final : private InterfacePeer {
  public:
    struct Subject {
        std::string effect, interface; // URIs
        unsigned long window = 0;      // the interface's parent
        float scale = 1;
        double sampleRate = 0;
    };
    /// `index` and `toolkit` must outlive the server.
    InterfaceServer(int socket, MessageMemory messages, const BundleIndex& index, InterfaceToolkit& toolkit,
                    Subject subject);

    /// Creates the interface and serves until the host closes the socket. The destructor destroys the
    /// interface.
    void run();

  private:
    using Clock = std::chrono::steady_clock;

    [[nodiscard]] Result<std::unique_ptr<InterfaceHost>> create();
    [[nodiscard]] std::optional<std::chrono::milliseconds> serve();
    [[nodiscard]] bool takePackets();
    void update();
    [[nodiscard]] bool takeRecord(std::uint32_t& port, std::vector<std::byte>& atom);

    [[nodiscard]] const Plugin& plugin() const noexcept override { return _plugin; }
    [[nodiscard]] double sampleRate() const noexcept override { return _subject.sampleRate; }
    [[nodiscard]] float value(std::uint32_t port) const override { return _values[port].value; }
    void setValue(std::uint32_t port, float value) override;
    void setListening(bool /*isListening*/) override {} // the host knows when the interface is open
    bool sendAtom(std::uint32_t port, std::span<const std::byte> atom) override;
    bool receiveAtom(std::uint32_t& port, std::vector<std::byte>& atom) override;

    const int _socket;
    const MessageMemory _messages;
    const BundleIndex& _index;
    InterfaceToolkit& _toolkit;
    SharedRing _fromHost, _toHost;
    const Subject _subject;
    Plugin _plugin;
    std::unique_ptr<InterfaceHost> _host;
    bool _isEmbedded = true; // as opposed to having windows of its own
    struct Value {
        float value = 0;
        std::uint32_t number = 0; // of the interface's last value, among all its values
        bool isUnsent = false;    // there was no space for it yet
    };
    std::vector<Value> _values; // by port index
    std::uint32_t _sent = 0;    // how many values were sent
    bool _hasNewRecords = false, _isVisible = false, _hasSaidClosed = false;
    bool _isUpdating = false; // a call of the interface has not returned, because it waits for a dialog
    Clock::time_point _next;  // when the interface's idle function is called
};

} // namespace platform::lv2
