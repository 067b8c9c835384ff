// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Downloads a file into the directory that programs of the same maker share.
#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "platform/network/URLSession.hpp"
#include "shared/Common/Files/FileEnumerator.hpp"

namespace tonewright {
namespace {

using platform::FileManager;
using platform::print;
using platform::URL;

constexpr double StartDelaySeconds = 1.0;
constexpr double TimeoutSeconds = 60.0;

// Copies the downloaded file to its destination and replaces an existing file.
std::optional<platform::Error> store(const URL& file, const URL& destination) {
    FileManager& manager = FileManager::defaultManager();
    if (manager.fileExistsAtPath(destination.path())) {
        print("Eine Datei mit diesem Namen existiert bereits, die Datei wird entfernt...");
        if (auto error = manager.removeItemAtURL(destination)) return error;
    }
    return manager.copyItemAtURL(file, destination);
}

DownloadOutcome finish(const URL& source, const URL& destination, const std::optional<URL>& file,
                       const std::shared_ptr<platform::URLResponse>& response,
                       const std::optional<platform::Error>& error) {
    if (!file || error) {
        // The "%@" is printed on purpose: readers of the log expect exactly this text.
        print("FEHLER: Während des Downloads der Datei (" + source.absoluteString() +
              ") ist folgender Fehler aufgetreten: %@ " +
              (error ? error->localizedDescription() : "(keine Beschreibung verfügbar)"));
        return DownloadOutcome::Failed;
    }
    const auto* answer = dynamic_cast<const platform::HTTPURLResponse*>(response.get());
    if (answer == nullptr) return DownloadOutcome::NotStored;
    // The file is stored whatever the HTTP status is.
    print("Die Datei (" + source.absoluteString() + ") wurde als '" + file->absoluteString() +
          "' heruntergeladen mit Status Code: " + std::to_string(answer->statusCode()));
    if (const auto failed = store(*file, destination)) {
        print("FEHLER: Die Datei konnte nicht in das Zielverzeichnis '" + destination.absoluteString() +
              "' kopiert werden. " + failed->description());
        return DownloadOutcome::Failed;
    }
    print("Temporäre Download Datei kopiert nach: '" + destination.absoluteString() + "'.");
    if (!FileManager::defaultManager().fileExistsAtPath(destination.path())) {
        print("FEHLER: Download Datei nicht am Ziel vorhanden.");
        return DownloadOutcome::Failed;
    }
    print("Download nach '" + destination.path() + "' war erfolgreich.");
    return DownloadOutcome::Stored;
}

} // namespace

void FileEnumerator::downloadFile(const URL& url) {
    startDownload(url, {});
}

void FileEnumerator::startDownload(const URL& url, const DownloadObserver& observer) {
    print("Download von '" + url.absoluteString() + "' wurde gestartet.");
    const auto container = FileManager::defaultManager().containerURLForSecurityApplicationGroupIdentifier(
        ApplicationGroupIdentifier);
    const URL destination = platform::unwrap(container).appendingPathComponent("download.zip");
    platform::DispatchQueue::main().asyncAfter(StartDelaySeconds, [url, destination, observer] {
        platform::URLRequest request(url);
        request.timeoutInterval = TimeoutSeconds;
        const auto session =
            platform::URLSession::create(platform::URLSessionConfiguration::defaultSessionConfiguration());
        const auto task = session->downloadTaskWithRequest(
            request, [url, destination, session,
                      onEnded = observer.onEnded](const auto& file, const auto& response, const auto& error) {
                const auto outcome = finish(url, destination, file, response, error);
                print("Asynchroner Download...");
                // Called only after the session has removed its file, because the program may end then.
                if (onEnded) session->delegateQueue().async([onEnded, outcome] { onEnded(outcome); });
            });
        task->resume();
        if (observer.onBegan) observer.onBegan(task);
    });
}

} // namespace tonewright
