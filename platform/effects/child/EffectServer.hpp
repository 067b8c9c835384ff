// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The server in an effect's process. It answers the host's requests on one thread and renders blocks on
// another, with the class Processor, which also runs effects inside the host. It ends when the host ends.
#pragma once

#include "platform/effects/child/BlockMidi.hpp"
#include "platform/effects/lv2/BundleIndex.hpp"
#include "platform/effects/process/BlockMemory.hpp"
#include "platform/effects/process/MessageMemory.hpp"
#include "platform/effects/process/messages.hpp"
#include "platform/effects/running/Processor.hpp"

#include <memory>
#include <optional>
#include <string>

namespace platform::lv2 {

class EffectServer {
  public:
    /// `index` must outlive the server.
    EffectServer(int socket, BlockMemory memory, MessageMemory messages, std::string uri,
                 const BundleIndex& index)
        : _socket(socket)
        , _memory(std::move(memory))
        , _messages(std::move(messages))
        , _uri(std::move(uri))
        , _index(index) {}
    EffectServer(const EffectServer&) = delete;
    EffectServer& operator=(const EffectServer&) = delete;

    /// Serves until the host closes the socket. The sound thread still runs then, so the caller must end the
    /// process.
    void run();

  private:
    struct Answer {
        bool isDone = false;
        std::string text; // the result, or the reason for the failure
    };
    [[nodiscard]] Answer answer(const ReceivedMessage& request);
    [[nodiscard]] Answer make(const Message& request);
    [[nodiscard]] Answer saveState();
    [[nodiscard]] Answer sendMidi(const ReceivedMessage& request);
    [[nodiscard]] Answer restored(const std::optional<Error>& failure);
    void applyValues();
    void publishValues(PortKind kind);
    void renderBlocks();
    void renderBlock();

    const int _socket;
    const BlockMemory _memory;
    const MessageMemory _messages;
    const std::string _uri;
    const BundleIndex& _index;
    std::unique_ptr<BlockMidi> _midi;      // made before the sound thread
    std::shared_ptr<Processor> _processor; // likewise
};

} // namespace platform::lv2
