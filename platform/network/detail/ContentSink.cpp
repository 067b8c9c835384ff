// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/network/detail/ContentSink.hpp"

#include "platform/foundation/Descriptor.hpp"
#include "platform/foundation/FileManager.hpp"
#include "platform/foundation/ProcessInfo.hpp"
#include "platform/foundation/product.hpp"
#include "platform/network/detail/Transfer.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

namespace platform {
namespace {

// The largest content kept in memory. The limit stops endless content and compressed content that expands to
// an extreme size.
constexpr std::size_t MostBytesInMemory = std::size_t{256} << 20U;

// NOLINTBEGIN(cppcoreguidelines-no-malloc): only realloc can grow a block without a copy A buffer that grows
// with realloc, which remaps the pages of a large block instead of copying them; pages that were never
// written take no memory. A vector would hold the content twice whenever it grows.
class GrowingMemory {
  public:
    GrowingMemory() = default;
    ~GrowingMemory() { std::free(_bytes); }
    GrowingMemory(const GrowingMemory&) = delete;
    GrowingMemory& operator=(const GrowingMemory&) = delete;

    [[nodiscard]] std::size_t size() const { return _size; }
    /// Appends `bytes`, or returns false if there is not enough memory.
    [[nodiscard]] bool append(std::span<const std::byte> bytes) {
        if (bytes.empty()) return true;
        if (bytes.size() > _capacity - _size && !resize(std::max(2 * _capacity, _size + bytes.size()))) {
            return false;
        }
        std::memcpy(_bytes + _size, bytes.data(), bytes.size());
        _size += bytes.size();
        return true;
    }
    /// Transfers the content to the caller.
    [[nodiscard]] URLData take() {
        if (_size > 0) (void)resize(_size);
        std::shared_ptr<const std::byte> bytes(std::exchange(_bytes, nullptr), [](const std::byte* memory) {
            std::free(const_cast<std::byte*>(memory));
        });
        _capacity = 0;
        return {std::move(bytes), std::exchange(_size, 0)};
    }

  private:
    bool resize(std::size_t capacity) {
        auto* bytes = static_cast<std::byte*>(std::realloc(_bytes, capacity));
        if (bytes == nullptr) return false;
        _bytes = bytes;
        _capacity = capacity;
        return true;
    }

    std::byte* _bytes = nullptr;
    std::size_t _size = 0;
    std::size_t _capacity = 0;
};
// NOLINTEND(cppcoreguidelines-no-malloc)

class DataSink final : public ContentSink {
  public:
    explicit DataSink(DataCompletion completion)
        : _completion(std::move(completion)) {}

    std::optional<Error> append(std::span<const std::byte> bytes) override {
        if (bytes.size() > MostBytesInMemory - _data.size()) {
            return transferError(TransferFailure::TooLarge,
                                 "The transfer failed (The content is too large to be kept in memory).");
        }
        if (!_data.append(bytes)) {
            return transferError(TransferFailure::TooLarge,
                                 "The transfer failed (There is not enough memory for the content).");
        }
        return std::nullopt;
    }

    void deliver(const std::shared_ptr<URLResponse>& response, std::optional<Error> error) override {
        if (!_completion) return;
        if (error) {
            _completion(std::nullopt, response, error);
        } else {
            _completion(_data.take(), response, std::nullopt);
        }
    }

  private:
    DataCompletion _completion;
    GrowingMemory _data;
};

Error writeError(int number) {
    const char* reason = ::strerrordesc_np(number);
    return posixError(number, std::string("The temporary file couldn't be written (") +
                                  (reason != nullptr ? reason : "unknown error") + ").");
}

// Writes to an unnamed temporary file (O_TMPFILE) where the file system supports that, so that no file is
// left behind however the process ends. The completion opens the file through /proc/self/fd.
class DownloadSink final : public ContentSink {
  public:
    explicit DownloadSink(DownloadCompletion completion)
        : _completion(std::move(completion)) {}
    ~DownloadSink() override { discard(); }

    std::optional<Error> append(std::span<const std::byte> bytes) override {
        if (auto error = open()) return error;
        while (!bytes.empty()) {
            const ssize_t written = ::write(_file.get(), bytes.data(), bytes.size());
            if (written < 0 && errno == EINTR) continue;
            if (written < 0) return writeError(errno);
            bytes = bytes.subspan(static_cast<std::size_t>(written));
        }
        return std::nullopt;
    }

    void deliver(const std::shared_ptr<URLResponse>& response, std::optional<Error> error) override {
        if (!error) error = open(); // empty content needs a file too
        if (_completion) {
            if (error) {
                _completion(std::nullopt, response, error);
            } else {
                _completion(URL::fileURLWithPath(_path, false), response, std::nullopt);
            }
        }
        discard();
    }

  private:
    std::optional<Error> open() {
        if (_file) return std::nullopt;
        const std::string folder = FileManager::defaultManager().temporaryDirectory().path();
        _file = Descriptor(::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
        _path = "/proc/self/fd/" + std::to_string(_file.get());
        if (_file && ::access(_path.c_str(), F_OK) == 0) return std::nullopt;
        _path = folder + "/" + product::Name + "-download-" +
                ProcessInfo::processInfo().globallyUniqueString() + ".tmp";
        _file = Descriptor(::open(_path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600));
        if (!_file) return writeError(errno);
        _hasName = true;
        return std::nullopt;
    }

    void discard() {
        if (_hasName) ::unlink(_path.c_str());
        _hasName = false;
        _file.close();
    }

    DownloadCompletion _completion;
    std::string _path;
    Descriptor _file;
    bool _hasName = false;
};

} // namespace

std::unique_ptr<ContentSink> makeDataSink(DataCompletion completion) {
    return std::make_unique<DataSink>(std::move(completion));
}

std::unique_ptr<ContentSink> makeDownloadSink(DownloadCompletion completion) {
    return std::make_unique<DownloadSink>(std::move(completion));
}

} // namespace platform
