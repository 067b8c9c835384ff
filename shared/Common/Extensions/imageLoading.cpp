// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Extensions/imageLoading.hpp"

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/dispatch/Task.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/product.hpp"
#include "platform/network/URLSession.hpp"
#include "platform/ui/UIImageView.hpp"
#include "shared/Common/Extensions/safeprint.hpp"

namespace tonewright {
namespace {

using platform::UIImage;
using platform::UIImageView;
using platform::URL;

constexpr double FetchTimeout = 60; // seconds without progress
constexpr int StatusOK = 200;

void readInto(const std::weak_ptr<UIImageView>& place, const URL& url) {
    const auto data = platform::contentsOfURL(url);
    if (!data) return debugprint("UIImageView::loadFrom() : Could not encode image data.");
    const auto image = UIImage::initWithData(data.value());
    const auto view = place.lock();
    if (image && view) view->setImage(image);
    // Also printed after success, because users of the log expect it.
    debugprint("UIImageView::loadFrom() : Could not assign image.");
}

// Decodes one picture at a time, in the order of the responses, so that pictures from the network never
// occupy more than one processor.
platform::DispatchQueue& decodingQueue() {
    // Never destroyed, because a response may arrive while the process exits.
    static auto* queue =
        new platform::DispatchQueue(std::string(platform::product::LabelPrefix) + "pictures");
    return *queue;
}

// The response arrives on the session's queue. The picture is decoded on another queue, because decoding
// would block the session's queue. `hold` keeps the view alive until the image has been set.
void requestImageFromURL(UIImageView& view, const URL& url, const platform::TaskHold& hold) {
    platform::URLRequest request(url);
    request.cachePolicy = platform::URLRequestCachePolicy::UseProtocolCachePolicy;
    request.timeoutInterval = FetchTimeout;
    const auto task = platform::URLSession::sharedSession()->dataTaskWithRequest(
        request, [&view, hold](const std::optional<platform::URLData>& data,
                               const std::shared_ptr<platform::URLResponse>& response,
                               const std::optional<platform::Error>& error) {
            if (error) return platform::print(error->description());
            const auto* http = dynamic_cast<const platform::HTTPURLResponse*>(response.get());
            if (http != nullptr && http->statusCode() == StatusOK) {
                platform::print("Fetched image successfully");
            }
            decodingQueue().async(
                [&view, hold, content = *data] { view.setImage(UIImage::initWithData(content)); });
        });
    task->resume();
}

} // namespace

void loadFrom(const std::shared_ptr<UIImageView>& view, std::string_view URLAddress) {
    const auto url = URL::fromString(URLAddress);
    if (!url) {
        return debugprint("UIImageView::loadFrom() : Could not encode url string : " +
                          std::string(URLAddress));
    }
    platform::DispatchQueue::main().async(
        [place = std::weak_ptr<UIImageView>(view), url = *url] { readInto(place, url); });
}

void getImageFromURLString(const std::shared_ptr<UIImageView>& view, std::string_view imageURLString) {
    const auto url = URL::fromString(imageURLString);
    if (!url) return;
    platform::startTask(
        [view, url = *url](const platform::TaskHold& hold) { requestImageFromURL(*view, url, hold); });
}

} // namespace tonewright
