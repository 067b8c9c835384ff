// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The running application, and the function that `main` calls to run it. Main thread only.
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

    /// Opens `url` with the desktop's default program and returns immediately. `completionHandler` is called
    /// on the main queue with whether that succeeded. `options` is not used.
    void openURL(const URL& url, const std::map<std::string, std::string>& options,
                 std::function<void(bool success)> completionHandler);

    /// Ends the main loop after its current iteration.
    void terminate();
    [[nodiscard]] bool isTerminating() const noexcept { return _isTerminating; }

  private:
    UIApplication() = default;
    std::shared_ptr<UIApplicationDelegate> _delegate;
    bool _isTerminating = false;
};

/// Runs the application: creates the delegate of the class `delegateClassName`, loads the main screen from
/// the interface description that applicationIdentity() names, runs the main loop until the window is closed,
/// and returns 0.
///
/// From then on, standard output is reserved for `print`. The options --help and --version are answered
/// before anything else happens. If the application cannot start, the reason is reported in one sentence on
/// standard error and the process ends: with status 2 for an unknown option, with status 1 without a display
/// or interface description. If product::TraceStartVariable is set in the environment, the monotonic time of
/// the first frame is written to standard error.
int UIApplicationMain(int argc, char** argv, const std::optional<std::string>& principalClassName,
                      std::string_view delegateClassName);

} // namespace platform
