// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the help screen in a real window with WebKit: what it shows, reports, allows and refuses.
#include "shared/HelpViewController/HelpViewController.hpp"

#include "tests/support/child.hpp"
#include "tests/support/revealed.hpp"
#include "tests/web/webFixture.hpp"

#include <webkit/webkit.h>

namespace tonewright {

namespace test {

struct LoadHelpHtml {
    friend auto revealed(LoadHelpHtml);
};
template struct Reveal<LoadHelpHtml, &HelpViewController::loadHelpHtml>;

} // namespace test

namespace {

using platform::URL;
using platform::WKNavigationResponsePolicy;
using namespace platform::testing;
using test::Lines;

class HelpScreenTest : public platform::testing::ToolkitTest {
  protected:
    HelpScreenTest() { registerHelpScreen(); }

    static std::shared_ptr<HelpViewController> makeScreen() {
        auto screen = std::make_shared<HelpViewController>("HelpViewController");
        (void)screen->view();
        return screen;
    }
    void show(const std::shared_ptr<HelpViewController>& screen) {
        window.controller->presentViewController(screen, true, nullptr);
    }
    static std::shared_ptr<HelpViewController> documentScreen(const std::string& url) {
        auto screen = makeScreen();
        screen->prepareInfo("showDocument");
        screen->documentURL = URL::fromString(url);
        return screen;
    }

    platform::testing::ShownWindow window{600, 500};
    PageServer server;
};

TEST_F(HelpScreenTest, IdentifierChoosesTheContent) {
    const std::string manual = platform::Bundle::main().resourceURL()->absoluteString() + "manual.pdf";
    using Case = std::pair<const char*, std::string>; // null: without prepare; empty: shows nothing
    for (const auto& [identifier, shown] :
         {Case{nullptr, manual}, Case{"showHelp", manual}, Case{"showInfo", std::string(WebSite)},
          Case{"ShowHelp", ""}, Case{"", ""}, Case{"showDocument", ""}}) {
        SCOPED_TRACE(identifier == nullptr ? "not prepared" : identifier);
        test::CapturedOutput output;
        const auto screen = makeScreen();
        if (identifier != nullptr) screen->prepareInfo(identifier);
        EXPECT_EQ(engineOf(*screen->webView.lock()), nullptr)
            << "nothing is loaded before the screen appears";
        show(screen);
        if (shown.empty()) {
            EXPECT_EQ(engineOf(*screen->webView.lock()), nullptr);
            EXPECT_EQ(output.lines(), Lines{});
        } else {
            EXPECT_TRUE(waitFor([&] { return output.lines().size() >= 2; }));
            Lines lines = output.lines();
            lines.resize(2); // ignores the progress of the load
            EXPECT_EQ(lines, (Lines{"navigationAction: ", shown}));
        }
        screen->buttonExit->press();
        EXPECT_EQ(window.controller->presentedViewController(), nullptr);
    }
}

TEST_F(HelpScreenTest, ExtensionOfTheResponseDecides) {
    using Case = std::pair<const char*, bool>; // a URL and whether it is allowed
    const auto screen = makeScreen();
    const auto view = screen->webView.lock();
    test::CapturedOutput output;
    for (const auto& [url, isAllowed] :
         {Case{"https://a.example/", true}, Case{"https://a.example/m.pdf", true},
          Case{"https://a.example/m.Pdf", true}, Case{"https://a.example/m.HTML", true},
          Case{"https://a.example/page", true}, Case{"https://a.example/.zip", true},
          Case{"https://a.example/page?of=a.zip#b.jpg", true}, Case{"https://a.example/a.htm", false},
          Case{"https://a.example/a.png", false}, Case{"https://a.example/a.zip?b.pdf", false},
          Case{"https://a.example/a.pdf.gz", false}}) {
        std::optional<WKNavigationResponsePolicy> answer;
        screen->decidePolicyFor(*view, platform::WKNavigationResponse{{URL::fromString(url)}},
                                [&](WKNavigationResponsePolicy policy) { answer = policy; });
        EXPECT_EQ(answer, isAllowed ? WKNavigationResponsePolicy::Allow : WKNavigationResponsePolicy::Cancel)
            << url;
        EXPECT_EQ(output.take(), (Lines{"navigationResponse: ", url}));
    }
    const auto unanswered = [](auto) { FAIL() << "there is no URL to decide on"; };
    screen->decidePolicyFor(*view, platform::WKNavigationResponse{}, unanswered);
    screen->decidePolicyFor(*view, platform::WKNavigationAction{}, unanswered);
    EXPECT_EQ(screen->createWebViewWith(*view, {}, {}, {}), nullptr);
    EXPECT_EQ(screen->createWebViewWith(*view, {}, {{URL::fromString("https://a.example/w")}}, {}), nullptr);
    EXPECT_EQ(output.take(), (Lines{"navigationResponse: ", "navigationAction: ", "createWebViewWith:",
                                    "createWebViewWith:", "https://a.example/w"}));
}

TEST_F(HelpScreenTest, NavigationsAreToldInOrder) {
    server.pages["/start"] = {.location = server.url("/page.html")};
    server.pages["/page.html"] = {
        page("document.title = 'page'; onload = () => location.href = 'picture.png'")};
    server.pages["/picture.png"] = {"no picture", "image/png"};
    test::CapturedOutput output;
    const auto screen = documentScreen(server.url("/start"));
    show(screen);
    const Lines expected{
        "navigationAction: ",   server.url("/start"),      "navigationAction: ", server.url("/page.html"),
        "navigationResponse: ", server.url("/page.html"),  "navigationAction: ", server.url("/picture.png"),
        "navigationResponse: ", server.url("/picture.png")};
    EXPECT_TRUE(waitFor([&] { return output.lines().size() >= expected.size(); }));
    EXPECT_EQ(output.take(), expected);
    EXPECT_EQ(titleOf(*screen->webView.lock()), "page") << "a refused load keeps the page";
    // Each appearance loads the page again.
    screen->viewWillAppear(false);
    EXPECT_TRUE(waitFor([&] { return output.lines().size() >= 2; }));
    EXPECT_EQ(output.lines().at(1), server.url("/start"));
    screen->buttonExit->press();
}

TEST_F(HelpScreenTest, HelpPageIsShownFromItsText) {
    test::CapturedOutput output;
    auto screen = makeScreen();
    screen->prepareInfo("none");
    show(screen);
    (*screen.*revealed(test::LoadHelpHtml()))();
    EXPECT_TRUE(
        waitFor([&] { return titleOf(*screen->webView.lock()).find("Tonewright") != std::string::npos; }));
    EXPECT_EQ(output.lines(),
              (Lines{"navigationAction: ",
                     platform::Bundle::main().resourceURL()->absoluteString() + "help.html"}));
    screen->buttonExit->press();
}

TEST_F(HelpScreenTest, HelpPageThatIsNoTextIsTold) {
    const auto screen = makeScreen();
    const test::Scratch scratch;
    const std::string page = platform::Bundle::main().resourceURL()->path() + "/help.html";
    test::CapturedOutput output;
    test::holdsInChild([&] {
        test::mountInChild(scratch.file("page", "<p>caf\xE9</p>").c_str(), page, nullptr, MS_BIND);
        (*screen.*revealed(test::LoadHelpHtml()))();
    });
    EXPECT_NE(output.take().at(0).find("couldn't be opened (It is not UTF-8 text)."), std::string::npos);
}

// The state of the PDF viewer, read by a script that the test injects.
struct Viewer : tonewright::test::Uncopied {
    explicit Viewer(const HelpViewController& screen)
        : manager(
              webkit_web_view_get_user_content_manager(WEBKIT_WEB_VIEW(engineOf(*screen.webView.lock())))) {
        // NOLINTNEXTLINE(modernize-avoid-c-arrays): WebKit requires it
        const char* const places[] = {"webkit-pdfjs-viewer://*/*", nullptr};
        auto* script = webkit_user_script_new(R"(setInterval(() => {
            const viewer = window.PDFViewerApplication;
            const text = document.querySelector('.page[data-page-number="1"] .textLayer span[role="presentation"]');
            if (!viewer?.pdfViewer || !text) return;
            const shown = name => document.getElementById(name)?.getClientRects().length ? name : '';
            window.webkit.messageHandlers.test.postMessage([
                viewer.page, parseFloat(getComputedStyle(text).fontSize), viewer.pdfViewer.container.scrollTop,
                document.hasFocus() ? document.activeElement.id || "viewer" : "elsewhere", document.getElementById('toolbarViewer').offsetHeight * innerWidth,
                'shown:' + ['print', 'download', 'openFile', 'editorModeButtons', 'secondaryPrint', 'secondaryDownload',
                            'secondaryOpenFile', 'presentationMode'].map(shown).join('')].join(' '));
        }, 50))",
                                              WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                                              WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_END, places, nullptr);
        webkit_user_content_manager_add_script(manager, script);
        webkit_user_script_unref(script);
        g_signal_connect(manager, "script-message-received::test",
                         G_CALLBACK(+[](WebKitUserContentManager*, JSCValue* value, Viewer* self) {
                             char* text = jsc_value_to_string(value);
                             self->same = std::exchange(self->report, text) == text ? self->same + 1 : 0;
                             std::istringstream(text) >> self->page >> self->textSize >> self->top >>
                                 self->focus >> self->toolbar >> self->shown;
                             g_free(text);
                         }),
                         this);
        webkit_user_content_manager_register_script_message_handler(manager, "test", nullptr);
    }
    ~Viewer() { g_signal_handlers_disconnect_by_data(manager, this); }
    /// Returns whether nothing has changed for half a second, so that the first layout is over.
    [[nodiscard]] bool isSettled() const { return same >= 10; }

    WebKitUserContentManager* manager;
    int page = 0;
    double textSize = 0, top = 0, toolbar = 0;
    std::string focus, shown;
    std::string report; // the last one, which comes every 50 ms
    int same = 0;       // reports in a row that were equal to the one before
};

void press(const std::string& keys) {
    ASSERT_EQ(std::system(("xdotool key " + keys).c_str()), 0);
}

TEST_F(HelpScreenTest, KeysWorkInTheManualAtOnce) {
    const auto screen = makeScreen();
    show(screen);
    ASSERT_EQ(std::system(("xdotool windowfocus --sync $(xdotool search --onlyvisible --pid " +
                           std::to_string(getpid()) + " | head -n 1)")
                              .c_str()),
              0);
    Viewer viewer(*screen);
    EXPECT_TRUE(waitFor([&] {
        return viewer.isSettled() && (viewer.focus == "viewer" || viewer.focus == "viewerContainer");
    })) << viewer.focus
        << ' ' << viewer.page << ' ' << viewer.textSize;
    EXPECT_EQ(viewer.shown, "shown:") << "these buttons have no function here";
    const double size = viewer.textSize, toolbar = viewer.toolbar;
    press("ctrl+plus");
    EXPECT_TRUE(waitFor([&] { return viewer.textSize > 1.05 * size && viewer.toolbar == toolbar; }));
    press("ctrl+minus ctrl+minus");
    EXPECT_TRUE(waitFor([&] { return viewer.textSize < 0.95 * size && viewer.toolbar == toolbar; }));
    press("ctrl+0");
    EXPECT_TRUE(waitFor([&] { return std::abs(viewer.textSize - size) < 0.01 * size; })) << viewer.textSize;
    EXPECT_EQ(viewer.toolbar, toolbar);

    for (const char* key : {"Down", "Page_Down", "space"}) {
        const double before = viewer.top;
        press(key);
        EXPECT_TRUE(waitFor([&] { return viewer.top > before; })) << key;
        EXPECT_TRUE(platform::testing::waitFor(
            [&, last = -1.0]() mutable { return std::exchange(last, viewer.top) == viewer.top; }));
    }
    press("End");
    EXPECT_TRUE(waitFor([&] { return viewer.page > 10; }));
    press("Home");
    EXPECT_TRUE(waitFor([&] { return viewer.page == 1; }));
    press("Right");
    EXPECT_TRUE(waitFor([&] { return viewer.page == 2; }));
    press("Left");
    EXPECT_TRUE(waitFor([&] { return viewer.page == 1; }));
    press("ctrl+f");
    EXPECT_TRUE(waitFor([&] { return viewer.focus == "findInput"; })) << viewer.focus;
    screen->buttonExit->press();
}

TEST_F(HelpScreenTest, ExitWorksWhateverThePageDoes) {
    server.pages["/loop"] = {page("document.title = 'looping'; setTimeout(() => { for (;;); }, 0)")};
    server.pages["/silent"] = {.stays = true};
    test::CapturedOutput output;
    for (const std::string path : {"/loop", "/silent", "/nothing-yet", "/manual"}) {
        SCOPED_TRACE(path);
        auto screen = path == "/manual" ? makeScreen() : documentScreen(server.url(path));
        show(screen);
        if (path == "/loop") {
            EXPECT_TRUE(waitFor([&] { return titleOf(*screen->webView.lock()) == "looping"; }));
        } else if (path == "/silent") {
            EXPECT_TRUE(waitFor([&] { return !server.asked.empty() && server.asked.back() == path; }));
        } else if (path == "/manual") {
            const Viewer viewer(*screen);
            EXPECT_TRUE(waitFor([&] { return viewer.page == 1; }));
        }
        EngineObjects objects(*screen->webView.lock());
        bool ended = false;
        const std::weak_ptr<HelpViewController> gone = screen;
        if (path == "/nothing-yet") {
            window.controller->dismissViewControllerAnimated(true, [&] { ended = true; });
        } else {
            screen->buttonExit->press(), ended = true;
        }
        screen.reset();
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_TRUE(waitFor(
            [&] { return ended && gone.expired() && objects.areFreed() && childProcesses().empty(); }));
        // WebKit on its own ends a process that does not answer after ten seconds.
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(8));
    }
}

TEST_F(HelpScreenTest, WebViewThatIsNotConnectedIsFatal) {
    EXPECT_DEATH(std::make_shared<HelpViewController>(std::nullopt)->viewWillAppear(false),
                 "Unexpectedly found nil while implicitly unwrapping an Optional value");
}

} // namespace
} // namespace tonewright
