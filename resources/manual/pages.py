#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Make the manual's pages for browsers. Usage: pages.py manual.html FOLDER. Writes one page for each chapter, and an
index page with the cover and the contents. The pages use no scripts and no network."""
import html
import pathlib
import re
import shutil
import sys

PAGE = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>{title}</title>
<link rel="stylesheet" href="manual.css">
<link rel="stylesheet" href="pages.css">
</head>
<body>
<p class="skip"><a href="#text">To the text</a></p>
<nav class="way" aria-label="Chapters">{way}</nav>
<main id="text" tabindex="-1">
{text}
</main>
<nav class="way" aria-label="Chapters, below the text">{way}</nav>
</body>
</html>
"""


def words(markup: str) -> str:
    return html.unescape(" ".join(re.sub(r"<[^>]+>", "", markup).split()))


def chapters(body: str) -> list[tuple[str, str, str]]:
    """Split the manual into chapters (name, heading, text). The part before the first chapter becomes the index."""
    parts = re.split(r'<h1 id="([\w-]+)"[^>]*>(.*?)</h1>', body)
    found = zip(parts[1::3], parts[2::3], parts[3::3])
    return [("index", "Tonewright: the manual", parts[0]),
            *((name, f"{number} {heading}", text) for number, (name, heading, text) in enumerate(found, 1))]


def way(pages: list[tuple[str, str, str]], at: int) -> str:
    """Return the links to the previous and the next chapter."""
    links = [f'<a rel="{rel}" href="{pages[to][0]}.html">{kind}: {pages[to][1] if to else "contents"}</a>'
             for rel, kind, to in (("prev", "Previous", at - 1), ("next", "Next", at + 1)) if 0 <= to < len(pages)]
    if at > 1:
        links.insert(1, '<a href="index.html#contents">Contents</a>')
    return "<ul>" + "".join(f"<li>{link}</li>" for link in links) + "</ul>"


def main(source: pathlib.Path, folder: pathlib.Path) -> None:
    shutil.rmtree(folder, ignore_errors=True)  # removes pages of renamed chapters
    folder.mkdir(parents=True)
    body = re.search(r"<body>(.*)</body>", source.read_text(), re.S)[1]
    body = body.replace('<h1 class="plain" id="contents">Contents</h1>', '<h2 id="contents">Contents</h2>')
    body = re.sub(r'<p class="title">(.*?)</p>', r'<h1 class="title">\1</h1>', body)
    for picture in sorted(set(re.findall(r'src="([^"]+)"', body))):
        shutil.copyfile(source.parent / picture, folder / pathlib.Path(picture).name)
    for name in ("manual.css", "pages.css"):
        shutil.copyfile(source.parent / name, folder / name)
    body = re.sub(r'src="[^"]*/', 'src="', body)

    pages = chapters(body)
    homes = {anchor: name for name, _, text in pages for anchor in (name, *re.findall(r'id="([\w-]+)"', text))}
    for at, (name, heading, text) in enumerate(pages):
        text = re.sub(r'href="#([\w-]+)"', lambda link: f'href="{homes[link[1]]}.html#{link[1]}"', text)
        text = text.replace(f'href="{name}.html#', 'href="#')
        if at > 0:
            text = f'<h1 id="{name}">{heading}</h1>{text}'
        title = heading if at == 0 else f"{words(heading)} - Tonewright: the manual"
        (folder / f"{name}.html").write_text(PAGE.format(title=html.escape(title), way=way(pages, at), text=text.strip()))


main(*map(pathlib.Path, sys.argv[1:]))
