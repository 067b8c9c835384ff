// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests WKWebView with WebKit, real pages and a real server.
#include "platform/web/WKWebView.hpp"
#include "tests/web/webFixture.hpp"

#include <webkit/webkit.h>

namespace platform {
namespace {

using namespace testing;

using ActionAnswer = std::function<void(WKNavigationActionPolicy)>;
using ResponseAnswer = std::function<void(WKNavigationResponsePolicy)>;

// Records the questions and answers them as the test says.
class Judge final : public WKNavigationDelegate, public WKUIDelegate {
  public:
    void decidePolicyFor(WKWebView&, const WKNavigationAction& action, const ActionAnswer& answer) override {
        actions.push_back(action.request.url ? action.request.url->absoluteString() : "none");
        onAction ? onAction(answer) : answer(WKNavigationActionPolicy::Allow);
    }
    void decidePolicyFor(WKWebView&, const WKNavigationResponse& response,
                         const ResponseAnswer& answer) override {
        responses.push_back(response.response.url ? response.response.url->absoluteString() : "none");
        onResponse ? onResponse(answer) : answer(WKNavigationResponsePolicy::Allow);
    }
    std::shared_ptr<WKWebView> createWebViewWith(WKWebView&, const WKWebViewConfiguration&,
                                                 const WKNavigationAction& action,
                                                 const WKWindowFeatures&) override {
        windows.push_back(action.request.url ? action.request.url->absoluteString() : "none");
        return nullptr;
    }

    std::vector<std::string> actions, responses, windows;
    std::function<void(const ActionAnswer&)> onAction;
    std::function<void(const ResponseAnswer&)> onResponse;
};

class WebViewTest : public testing::ToolkitTest {
  protected:
    WebViewTest() { open(); }
    ~WebViewTest() override {
        close();
        EXPECT_TRUE(waitFor([] { return childProcesses().empty(); })) << "a WebKit process still runs";
    }

    void open() {
        view = std::make_shared<WKWebView>();
        view->setFrame({0, 0, 400, 300});
        shown.view->addSubview(view);
        view->setNavigationDelegate(judge);
        view->setUIDelegate(judge);
    }
    void close() {
        if (!view) return;
        testing::EngineObjects objects(*view);
        view->removeFromSuperview();
        view.reset();
        EXPECT_TRUE(waitFor([&] { return objects.areFreed(); })) << "WebKit's objects outlive their view";
    }
    void load(const std::string& url, double timeout = 60) const {
        URLRequest request(*URL::fromString(url));
        request.timeoutInterval = timeout;
        view->loadRequest(request);
    }
    [[nodiscard]] bool waitForTitle(const std::string& title) const {
        const bool came = waitFor([&] { return titleOf(*view) == title; });
        EXPECT_EQ(titleOf(*view), title);
        return came;
    }
    // Loads a page in another view to the end; by then all effects of an earlier load have happened.
    void passTime() {
        server.pages["/meanwhile"] = {page("document.title = 'meanwhile'")};
        const auto other = std::make_shared<WKWebView>();
        other->loadRequest(URLRequest(*URL::fromString(server.url("/meanwhile"))));
        EXPECT_TRUE(waitFor([&] { return titleOf(*other) == "meanwhile"; }));
    }

    ShownWindow shown{400, 300};
    PageServer server;
    std::shared_ptr<Judge> judge = std::make_shared<Judge>();
    std::shared_ptr<WKWebView> view;
};

TEST_F(WebViewTest, DroppedQuestionsStayUnanswered) {
    server.pages["/page"] = {page("")};
    judge->onAction = [](const ActionAnswer&) {}; // released without an answer
    load(server.url("/page"));
    ASSERT_TRUE(waitFor([&] { return !judge->actions.empty(); }));
    passTime();
    EXPECT_EQ(std::count(server.asked.begin(), server.asked.end(), "/page"), 0);

    judge->onAction = nullptr;
    judge->onResponse = [](const ResponseAnswer&) {};
    load(server.url("/page"));
    ASSERT_TRUE(waitFor([&] { return !judge->responses.empty(); }));
    passTime();
    EXPECT_EQ(titleOf(*view), "") << "the page was shown before the delegate answered";
}

TEST_F(WebViewTest, AnswersMayComeLateAndTheFirstCounts) {
    server.pages["/page"] = {page("document.title = 'late'")};
    ActionAnswer late;
    judge->onAction = [&](const ActionAnswer& answer) { late = answer; };
    load(server.url("/page"));
    ASSERT_TRUE(waitFor([&] { return late != nullptr; }));
    passTime();
    late(WKNavigationActionPolicy::Allow);
    late(WKNavigationActionPolicy::Cancel);
    EXPECT_TRUE(waitForTitle("late"));

    late = nullptr;
    load(server.url("/page"));
    ASSERT_TRUE(waitFor([&] { return late != nullptr; }));
    close();
    late(WKNavigationActionPolicy::Allow); // the view no longer exists
}

TEST_F(WebViewTest, RefusedLoadsLeaveThePageThatIsThere) {
    server.pages["/page"] = {page("document.title = 'stays'")};
    load(server.url("/page"));
    ASSERT_TRUE(waitForTitle("stays"));
    judge->onAction = [](const ActionAnswer& answer) { answer(WKNavigationActionPolicy::Cancel); };
    load(server.url("/other"));
    ASSERT_TRUE(waitFor([&] { return judge->actions.size() == 2; }));
    judge->onAction = nullptr;
    load("mailto:someone@tonewright.example"); // belongs to another program
    ASSERT_TRUE(waitFor([&] { return judge->actions.size() == 3; }));
    passTime();
    EXPECT_EQ(titleOf(*view), "stays");
}

TEST_F(WebViewTest, EveryKindOfURLIsAskedAsItIs) {
    const tonewright::test::Scratch folder;
    const std::string file = folder.file("outside.html", page("document.title = 'outside'"));
    server.pages["/"] = {page("document.title = 'root'")};
    const std::string gone = PageServer().url("/");
    const std::string query = server.url("/?") + std::string(100'000, 'q');
    const std::string upper = "HTTP" + server.url("/").substr(4),
                      script = "javascript:document.title='script'";
    using Kind = std::pair<std::string, std::string>; // a URL and the title of the page that it shows
    for (const auto& [url, title] :
         {Kind{"data:text/html,%3Ctitle%3Edata%3C/title%3E", "data"}, Kind{"file://" + file, "outside"},
          Kind{upper, "root"}, Kind{server.url("/?a=b.zip"), "root"}, Kind{"about:blank", ""},
          Kind{script, ""}, Kind{query, "This page cannot be loaded"},
          Kind{gone, "This page cannot be loaded"},
          Kind{"file:///nowhere/at/all.html", "This page cannot be loaded"}}) {
        SCOPED_TRACE(url.substr(0, 80));
        close();
        judge->actions.clear();
        open();
        load(url);
        if (url != script) {
            EXPECT_TRUE(waitFor([&] { return !judge->actions.empty(); }));
        }
        if (!title.empty()) {
            EXPECT_TRUE(waitForTitle(title));
        } else {
            passTime();
        }
        EXPECT_EQ(judge->actions, url == script ? std::vector<std::string>{}
                                                : std::vector{url == upper ? server.url("/") : url});
        EXPECT_EQ(titleOf(*view), title);
    }
}

TEST_F(WebViewTest, TextIsShownWithLinksNextToItsBase) {
    server.pages["/near.html"] = {page("document.title = 'near'")};
    view->loadHTMLString("<title>text</title><script>onload = () => location.href = 'near.html'</script>",
                         *URL::fromString(server.url("/base.html")));
    EXPECT_TRUE(waitForTitle("near"));
    EXPECT_EQ(judge->responses, std::vector{server.url("/near.html")})
        << "loading a string asks for no response";
}

TEST_F(WebViewTest, PagesGetNoWindowsDialogsDownloadsOrPermissions) {
    server.pages["/file.bin"] = {"bytes", "application/octet-stream"};
    server.pages["/page"] = {page(R"(
        const found = [String(confirm('?')), String(prompt('?')), String(alert('!')), String(window.open('/window'))];
        const link = document.createElement('a');
        link.href = '/file.bin'; link.download = 'file.bin'; document.body.append(link);
        onload = async () => {
            for (const ask of [() => new Promise((yes, no) => navigator.geolocation.getCurrentPosition(yes, no)),
                               () => navigator.mediaDevices.getUserMedia({video: true})])
                await ask().then(() => found.push('yes'), () => found.push('no')).catch(() => found.push('no'));
            link.click();
            document.title = found.join(' ');
        };)")};
    load(server.url("/page"));
    // The settings block windows that the user did not request; without this block the delegate is asked.
    webkit_settings_set_javascript_can_open_windows_automatically(
        webkit_web_view_get_settings(WEBKIT_WEB_VIEW(testing::engineOf(*view))), TRUE);
    EXPECT_TRUE(waitForTitle("false null undefined null no no"));
    EXPECT_EQ(judge->windows, std::vector{server.url("/window")});
    ASSERT_TRUE(waitFor([&] { return judge->actions.size() >= 2; }));
    passTime();
    const char* home = std::getenv("HOME");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(home)) {
        EXPECT_EQ(entry.path().string().find("file.bin"), std::string::npos) << entry.path();
    }
}

TEST_F(WebViewTest, NothingIsKept) {
    server.pages["/"] = {page("document.cookie = 'crumb=1; max-age=9999'; document.title = document.cookie")};
    for (int round = 0; round < 2; ++round) {
        load(server.url("/"));
        EXPECT_TRUE(waitForTitle("crumb=1"));
        EXPECT_EQ(server.cookies, "");
        close();
        open();
    }
}

TEST_F(WebViewTest, PageThatBreaksDownEndsAlone) {
    server.pages["/"] = {page("document.title = 'root'")};
    load(server.url("/"));
    ASSERT_TRUE(waitForTitle("root"));
    const auto breakDown = [&] {
        webkit_web_view_terminate_web_process(WEBKIT_WEB_VIEW(testing::engineOf(*view)));
    };
    breakDown();
    EXPECT_TRUE(waitForTitle("This page stopped working"));
    EXPECT_EQ(judge->actions.size(), 1U) << "the delegate is not asked about the notice";
    // Reloads as the context menu does, and lets WebKit's process end once more.
    webkit_web_view_reload(WEBKIT_WEB_VIEW(testing::engineOf(*view)));
    ASSERT_TRUE(waitForTitle("root")) << "the view can be used again";
    breakDown();
    EXPECT_TRUE(waitForTitle("This page stopped working"));
}

TEST_F(WebViewTest, RefusedPasswordShowsTheServersPage) {
    server.pages["/locked"] = {.body = page("document.title = 'who are you?'"), .status = 401};
    load(server.url("/locked"));
    EXPECT_TRUE(waitForTitle("who are you?"));
    EXPECT_EQ(std::count(server.asked.begin(), server.asked.end(), "/locked"), 1);
}

TEST_F(WebViewTest, TellsThatItWorksUntilThereIsSomethingToSee) {
    const auto notice = [&] { return gtk_widget_get_next_sibling(testing::engineOf(*view)); };
    server.pages["/silent"] = {.stays = true};
    load(server.url("/silent"), 1.5);
    EXPECT_EQ(notice(), nullptr);
    ASSERT_TRUE(waitFor([&] { return notice() != nullptr; }));
    EXPECT_NE(titleOf(*view), "This page does not answer");
    ASSERT_TRUE(waitForTitle("This page does not answer"));
    EXPECT_TRUE(waitFor([&] { return notice() == nullptr; }));
}

} // namespace
} // namespace platform
