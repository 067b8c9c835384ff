// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The help screen on a real window, with the real engine: what it shows, tells, allows and refuses.
#include "shared/HelpViewController/HelpViewController.hpp"

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
    using Case = std::pair<const char*, std::string>; // null: not prepared; empty: shows nothing
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
            lines.resize(2); // how far the load has come is not the question here
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
    EXPECT_EQ(titleOf(*screen->webView.lock()), "page") << "what is refused takes nothing away";
    // Each appearance asks anew.
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

// What the next test runs, from a tree whose page has a fault.
TEST_F(HelpScreenTest, DISABLED_PageOfThisTree) {
    (*makeScreen().*revealed(test::LoadHelpHtml()))();
}

TEST_F(HelpScreenTest, HelpPageThatIsMissingIsFatalAndOneThatIsNoTextIsTold) {
    namespace fs = std::filesystem;
    const test::Scratch tree;
    const fs::path share = tree.folder("share/tonewright");
    const std::string program = tree.folder("bin") + "/help";
    fs::copy_file(fs::read_symlink("/proc/self/exe"), program);
    for (const auto& file : fs::directory_iterator(platform::Bundle::main().resourceURL()->path())) {
        if (file.path().extension() == ".ui") fs::copy_file(file.path(), share / file.path().filename());
    }

    const auto run = [&program](std::string& output) {
        const std::string command = "env -u GTEST_OUTPUT " + program +
                                    " --gtest_also_run_disabled_tests --gtest_brief=1" +
                                    " --gtest_filter='*PageOfThisTree' 2>&1";
        FILE* lines = popen(command.c_str(), "r");
        for (int c = fgetc(lines); c != EOF; c = fgetc(lines)) output.push_back(static_cast<char>(c));
        return pclose(lines);
    };
    std::string output;
    EXPECT_NE(run(output), 0);
    EXPECT_NE(output.find("The resource \"help.html\" is missing."), std::string::npos) << output;

    output.clear();
    (void)tree.file("share/tonewright/help.html", "<p>caf\xE9</p>");
    EXPECT_EQ(run(output), 0) << output;
    EXPECT_NE(output.find("couldn't be opened (It is not UTF-8 text)."), std::string::npos) << output;
}

// What the viewer says of itself, from a script of the test's own inside it.
struct Viewer {
    explicit Viewer(const HelpViewController& screen)
        : manager(
              webkit_web_view_get_user_content_manager(WEBKIT_WEB_VIEW(engineOf(*screen.webView.lock())))) {
        // NOLINTNEXTLINE(modernize-avoid-c-arrays): the engine's interface
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
                             std::istringstream(text) >> self->page >> self->textSize >> self->top >>
                                 self->focus >> self->toolbar >> self->shown;
                             g_free(text);
                         }),
                         this);
        webkit_user_content_manager_register_script_message_handler(manager, "test", nullptr);
    }
    ~Viewer() { g_signal_handlers_disconnect_by_data(manager, this); }
    Viewer(const Viewer&) = delete;
    Viewer& operator=(const Viewer&) = delete;

    WebKitUserContentManager* manager;
    int page = 0;
    double textSize = 0, top = 0, toolbar = 0;
    std::string focus, shown;
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
    EXPECT_TRUE(waitFor([&] { return viewer.focus == "viewer" || viewer.focus == "viewerContainer"; }))
        << viewer.focus << ' ' << viewer.page << ' ' << viewer.textSize;
    EXPECT_EQ(viewer.shown, "shown:") << "it does nothing in this window";
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
    for (const std::string path : {"/loop", "/silent", "/nothing-yet"}) {
        SCOPED_TRACE(path);
        auto screen = documentScreen(server.url(path));
        show(screen);
        if (path == "/loop") {
            EXPECT_TRUE(waitFor([&] { return titleOf(*screen->webView.lock()) == "looping"; }));
        } else if (path == "/silent") {
            EXPECT_TRUE(waitFor([&] { return !server.asked.empty() && server.asked.back() == path; }));
        }
        bool ended = false;
        const std::weak_ptr<HelpViewController> gone = screen;
        if (path == "/nothing-yet") {
            window.controller->dismissViewControllerAnimated(true, [&] { ended = true; });
        } else {
            screen->buttonExit->press(), ended = true;
        }
        screen.reset();
        EXPECT_TRUE(waitFor([&] { return ended && gone.expired() && childProcesses().empty(); }));
    }
}

TEST_F(HelpScreenTest, WebViewThatIsNotConnectedIsFatal) {
    EXPECT_DEATH(std::make_shared<HelpViewController>(std::nullopt)->viewWillAppear(false),
                 "Unexpectedly found nil while implicitly unwrapping an Optional value");
}

} // namespace
} // namespace tonewright
