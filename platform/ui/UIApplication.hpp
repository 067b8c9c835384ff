// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The running application and the process's entry into it. Main thread only.
#pragma once

#include "platform/foundation/URL.hpp"

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

class UIApplicationDelegate;

class UIApplication {
  public:
    /// Returns the application of this process.
    [[nodiscard]] static UIApplication& shared();

    [[nodiscard]] const std::shared_ptr<UIApplicationDelegate>& delegate() const noexcept {
        return _delegate;
    }
    void setDelegate(std::shared_ptr<UIApplicationDelegate> delegate) { _delegate = std::move(delegate); }

    /// Opens `url` in the desktop's own program for it, and returns at once. There are no options.
    void openURL(const URL& url, const std::map<std::string, std::string>& options,
                 std::function<void(bool success)> completionHandler);

    /// Ends the loop after the present turn.
    void terminate();
    [[nodiscard]] bool isTerminating() const noexcept { return _isTerminating; }

  private:
    UIApplication() = default;
    std::shared_ptr<UIApplicationDelegate> _delegate;
    bool _isTerminating = false;
};

/// Runs the application: creates the delegate of the class `delegateClassName`, loads the main screen from
/// the interface description that the process's identity names ("Main"), runs the loop until the window is
/// closed, and returns 0.
///
/// From here on standard output is reserved for `print`. The options --help and --version are answered before
/// anything starts. If the application cannot start (an unknown option, no display, no interface description)
/// it reports the reason in one sentence on standard error and ends the process with status 2, 1 or 1. With
/// product::TraceStartVariable in the environment the monotonic time of the first frame is written to
/// standard error.
int UIApplicationMain(int argc, char** argv, const std::optional<std::string>& principalClassName,
                      std::string_view delegateClassName);

} // namespace platform
