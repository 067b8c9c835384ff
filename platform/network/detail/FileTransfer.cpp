// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The transfer of a file URL, on a thread of the global queue.
#include "platform/foundation/Descriptor.hpp"
#include "platform/network/detail/Transfer.hpp"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace platform {
namespace {

class FileTransfer final : public URLSessionTask::Transfer {
  public:
    using Transfer::Transfer;

    void cancel() override { _isCancelled = true; }

  protected:
    void start() override {
        const auto self = std::static_pointer_cast<FileTransfer>(shared_from_this());
        DispatchQueue::global().async([self] { self->run(); });
    }

  private:
    void run() {
        const std::string path = _request.url.path();
        // Without O_NONBLOCK, opening a FIFO that has no writer would block the thread for ever.
        const Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        struct stat status {};
        if (!file || ::fstat(file.get(), &status) != 0) return fail(errno);
        if (S_ISDIR(status.st_mode)) return fail(EISDIR);
        if (!S_ISREG(status.st_mode)) return fail(EINVAL);
        const auto response = std::make_shared<URLResponse>(_request.url, "", status.st_size);
        std::array<std::byte, 65536> buffer;
        while (true) {
            if (_isCancelled) {
                return finish(response,
                              transferError(TransferFailure::Cancelled, "The transfer was cancelled."));
            }
            const ssize_t length = ::read(file.get(), buffer.data(), buffer.size());
            if (length == 0) return finish(response, std::nullopt);
            if (length < 0 && errno == EINTR) continue;
            if (length < 0) return fail(errno);
            if (auto error = append({buffer.data(), static_cast<std::size_t>(length)})) {
                return finish(response, error);
            }
        }
    }

    void fail(int number) {
        const char* reason = ::strerrordesc_np(number);
        finish(nullptr, transferError(TransferFailure::Failed,
                                      "The file '" + _request.url.path() + "' couldn't be read (" +
                                          (reason != nullptr ? reason : "unknown error") + ")."));
    }

    std::atomic<bool> _isCancelled{false};
};

} // namespace

std::shared_ptr<URLSessionTask::Transfer>
makeFileTransfer(std::shared_ptr<URLSession::Implementation> session, const URLRequest& request,
                 std::unique_ptr<ContentSink> sink) {
    return std::make_shared<FileTransfer>(std::move(session), request, std::move(sink));
}

} // namespace platform
