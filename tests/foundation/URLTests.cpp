// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/URL.hpp"
#include "tests/support/testing.hpp"

using platform::URL;

TEST(URL, FilePathsPassAsBytes) {
    const std::string path = "/tmp/a b#?%\xff\n[1]";
    const URL url = URL::fileURLWithPath(path, false);
    EXPECT_EQ(url.absoluteString(), "file:///tmp/a%20b%23%3F%25%FF%0A%5B1%5D");
    EXPECT_EQ(url.path(), path);
    EXPECT_TRUE(url.isFileURL());
    EXPECT_EQ(URL::fileURLWithPath("/tmp").absoluteString(), "file:///tmp/");
    EXPECT_EQ(URL::fileURLWithPath("/tmp").path(), "/tmp");
    EXPECT_EQ(URL::fileURLWithPath("/", true).path(), "/");
}

TEST(URL, TextFollowsTheGrammarStrictly) {
    for (const char* bad : {"", " ", "a b", "100%", "%4", "%zz", "http://x/<", "a\"b", "a{b", "a|b", "a\\b",
                            "a^b", "a`b", "\x01", "caf\xc3\xa9"}) {
        EXPECT_FALSE(URL::fromString(bad)) << bad;
    }
    for (const char* good : {"a", "../x?y#z", "http://h:80/p%20q", "about:blank", "mailto:a@b", "data:,x"}) {
        EXPECT_TRUE(URL::fromString(good)) << good;
    }
    EXPECT_EQ(URL::fromString("HTTP://host/p%20q/?a.b#c.d")->path(), "/p q");
    EXPECT_EQ(URL::fromString("HTTP://host/")->scheme(), "http");
    EXPECT_EQ(URL::fromString("mailto:a@b")->path(), "a@b");
}

TEST(URL, Components) {
    EXPECT_EQ(URL::fileURLWithPath("/a/b.tar.gz", false).pathExtension(), "gz");
    EXPECT_EQ(URL::fileURLWithPath("/a/.hidden", false).pathExtension(), "");
    EXPECT_EQ(URL::fileURLWithPath("/a/b c", true).lastPathComponent(), "b c");
    EXPECT_EQ(URL::fileURLWithPath("/a", true).appendingPathComponent("x y").absoluteString(),
              "file:///a/x%20y");
    EXPECT_EQ(URL::fromString("http://h/a?q")->appendingPathComponent("b").absoluteString(),
              "http://h/a/b?q");
}
