# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks that the manual and the help page are complete, self-contained, accessible and consistent with the effect."""
import html
import pathlib
import re
import subprocess
import unittest
import urllib.parse

import html5lib
import pikepdf

from tree import BUILD, SOURCE, main, text
from contrast import contrast

MANUAL, HELP = "resources/manual/manual.html", "resources/help/help.html"
SHARE, BUNDLE = BUILD / "share/tonewright", BUILD / "lib/lv2/tonewright.lv2"


class Page:
    """A page's elements in order, each as (tag, attributes, text). Faulty HTML raises an exception."""

    def __init__(self, source: str):
        tree = html5lib.HTMLParser(strict=True, namespaceHTMLElements=False).parse(source)
        self.elements = [(node.tag.rpartition("}")[2], node.attrib, "".join(node.itertext()))
                         for node in tree.iter() if isinstance(node.tag, str)]
        self.ids = [attributes["id"] for _, attributes, _ in self.elements if "id" in attributes]

    def all(self, *tags: str) -> list[tuple]:
        return [element for element in self.elements if element[0] in tags]


def plain(words: str) -> str:
    return " ".join(words.replace("\u2212", "-").split())


def tool(*command: str) -> str:
    return subprocess.run([*map(str, command)], capture_output=True, text=True, check=True).stdout


def number(words: str, unit: str = "") -> float:
    """Convert "4 kHz", "+12 semitones", "0.5" (in the unit of the following value) or "C3" to the port's unit."""
    note = re.fullmatch(r"([A-G])(\d)", words)
    if note:
        return 12 * (int(note[2]) + 1) + {"C": 0, "D": 2, "E": 4, "F": 5, "G": 7, "A": 9, "B": 11}[note[1]]
    value, own = re.fullmatch(r"([+-]?[\d.]+) ?(.*)", words).groups()
    return float(value) * {"kHz": 1000, "s/ms": 1000}.get(f"{own}/{unit}" if own == "s" else own, 1)


def ports() -> dict[str, dict]:
    """Return the controls in the effect's description, by symbol."""
    found = {}
    for block in re.findall(r"\[\s+a lv2:InputPort , lv2:ControlPort(.*?)\n    \]", (BUNDLE / "tonewright.ttl").read_text(), re.S):
        value = lambda key: re.search(rf'{key} "?([^" ;\n]+(?: [^";\n]+)*)"? ?(?:;|$|\n)', block)[1]  # noqa: E731
        unit = re.search(r"units:unit units:(\w+)", block)
        found[value("lv2:symbol")] = {
            "label": value("lv2:shortName"), "unit": {"hz": "Hz", "ms": "ms", "s": "s"}.get(unit[1], unit[1]) if unit else "",
            "values": [float(value(f"lv2:{key}")) for key in ("minimum", "maximum", "default")],
            "choices": re.findall(r'rdfs:label "([^"]+)" ; rdf:value', block)}
    return found


class Manual(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.page, cls.pdf = Page(text(MANUAL)), SHARE / "manual.pdf"
        cls.words = plain(tool("pdftotext", cls.pdf, "-"))

    def test_tables_of_controls_say_what_the_effect_says(self):
        rows = {}
        for match in re.finditer(r'<tr data-symbol="(\w+)">(.*?)</tr>', text(MANUAL), re.S):
            cells = [plain(re.sub(r"<[^>]+>", "", cell)) for cell in re.findall(r"<t[hd][^>]*>(.*?)</t[hd]>", match[2], re.S)]
            rows[match[1]] = [cell.replace("&nbsp;", " ") for cell in cells]
        self.assertEqual(set(rows), set(ports()))
        for symbol, port in ports().items():
            label, reach, start, _ = rows[symbol]
            self.assertEqual(label, port["label"], symbol)
            if choices := port["choices"] or (port["values"][:2] == [0, 1] and ["off", "on"]):
                self.assertEqual(reach.split(", "), choices, symbol)
                self.assertEqual(start, choices[int(port["values"][2])], symbol)
            else:
                low, high = reach.split(" to ")
                self.assertEqual([number(low, port["unit"]), number(high, port["unit"]), number(start, port["unit"])],
                                 port["values"], symbol)

    def test_every_preset_is_described(self):
        presets = re.findall(r'a pset:Preset ;.*?rdfs:label "([^"]+)"', (BUNDLE / "presets.ttl").read_text(), re.S)
        table = re.search(r'<table class="presets">(.*?)</table>', text(MANUAL), re.S)[1]
        self.assertEqual(re.findall(r"<tr><th>([^<]+)</th><td>", table), presets)
        self.assertEqual([name for name in presets if name not in self.words], [])

    def test_names_the_version(self):
        version = re.search(r"project\(tonewright VERSION ([\d.]+)", text("CMakeLists.txt"))[1]
        self.assertIn(f"The manual for version {version}", self.words)

    def test_outline_and_links_lead_to_every_heading(self):
        outline = re.findall(r"<item page=\"\d+\">(.*?)</item>", tool("pdftohtml", "-xml", "-i", "-stdout", self.pdf))
        headings = [element for element in self.page.all("h1", "h2")]
        self.assertEqual([plain(html.unescape(re.sub(r"^\d+\s", "", item))) for item in outline],
                         ["Tonewright", *(plain(element[2]) for element in headings)])
        named = set(re.findall(r'"([^"]+)"\s*$', tool("pdfinfo", "-dests", self.pdf), re.M))
        links = {element[1]["href"].removeprefix("#") for element in self.page.all("a")}
        self.assertEqual(links - named, set())
        contents = re.findall(r'href="#([\w-]+)"', re.search(r"<nav>(.*?)</nav>", text(MANUAL), re.S)[1])
        chapters = [element[1]["id"] for element in self.page.all("h1") if element[1].get("class") != "plain"]
        self.assertEqual([name for name in contents if name in chapters], chapters)

    def test_fonts_are_embedded(self):
        fonts = [line.split() for line in tool("pdffonts", self.pdf).splitlines()[2:]]
        self.assertTrue(fonts)
        for font in fonts:
            self.assertEqual(font[-5:-2], ["yes", "yes", "yes"], font)  # embedded, a subset, with a mapping to Unicode

    def test_structure_holds_all_headings_and_figures(self):
        with pikepdf.open(self.pdf) as pdf:
            found, open_elements = {"/H1": 0, "/H2": 0, "/Figure": []}, [pdf.Root.StructTreeRoot.K]
            while open_elements:
                element = open_elements.pop()
                if isinstance(element, pikepdf.Array):
                    open_elements.extend(reversed(list(element)))
                elif isinstance(element, pikepdf.Dictionary) and "/S" in element:
                    open_elements.append(element.K)
                    if element.S == "/Figure":
                        found["/Figure"].append(str(element.Alt))
                    elif str(element.S) in found:
                        found[str(element.S)] += 1
            self.assertEqual((str(pdf.Root.Lang), str(pdf.docinfo.Title), bool(pdf.Root.MarkInfo.Marked)),
                             ("en", "Tonewright: the manual", True))
        shown = [attributes for tag, attributes, _ in self.page.all("img", "svg") if "aria-hidden" not in attributes]
        self.assertEqual(found, {"/H1": len(self.page.all("h1")), "/H2": len(self.page.all("h2")),
                                 "/Figure": [one.get("alt") or one["aria-label"] for one in shown]})


class Pages(unittest.TestCase):
    def test_are_well_formed_and_accessible_and_lead_somewhere(self):
        files = [SHARE / "help.html", *sorted((SHARE / "manual").glob("*.html"))]
        pages = {file: Page(file.read_text()) for file in files}
        self.assertEqual(len(files), 2 + len(re.findall('<h1 id=', text(MANUAL))))
        for file, page in pages.items():
            name, source = file.name, file.read_text()
            self.assertEqual(len(page.all("h1")), 1, name)
            self.assertTrue(source.startswith("<!DOCTYPE html>") and page.all("html")[0][1].get("lang"), name)
            self.assertTrue(page.all("title")[0][2], name)
            self.assertEqual(sorted(set(page.ids)), sorted(page.ids), name)
            for tag, attributes, words in page.elements:
                where = f"{name}: <{tag}> {attributes}"
                if tag == "img":
                    self.assertTrue(attributes.get("alt"), where)
                if tag == "svg":
                    self.assertTrue(attributes.get("aria-hidden") == "true" or attributes.get("aria-label"), where)
                if tag == "a":
                    self.assertTrue(words.strip(), where)
                if link := attributes.get("href") or attributes.get("src"):
                    to = urllib.parse.urlsplit(link)
                    target = pathlib.Path(file.parent, to.path).resolve() if to.path else file
                    self.assertTrue(not to.scheme and target.is_file(), where)
                    self.assertTrue(not to.fragment or to.fragment in pages[target].ids, where)

    def test_help_page_needs_nothing_else(self):
        page = Page(text(HELP))
        self.assertEqual([element[:2] for element in page.all("script", "iframe", "object", "embed", "link", "img", "form")], [])
        self.assertEqual([element for element in page.elements for key in ("src", "srcset", "data", "action") if key in element[1]], [])
        self.assertIsNone(re.search(r"url\(|@import|expression\(", text(HELP)))
        self.assertEqual([len(page.all(tag)) for tag in ("header", "nav", "main", "footer", "h1")], [1] * 5)
        self.assertEqual((SHARE / "help.html").read_text(), text(HELP))

    def test_help_page_has_contrast_in_light_and_in_dark(self):
        schemes = [dict(re.findall(r"--(\w+): #([0-9a-f]+)", rule)) for rule in re.findall(r":root \{([^}]+)\}", text(HELP))]
        self.assertEqual(len(schemes), 2)
        for scheme in schemes:
            for ink in ("text", "quiet", "accent"):
                for paper in ("ground", "leaf"):
                    colours = [bytes.fromhex(digits if len(digits) == 6 else "".join(2 * digit for digit in digits))
                               for digits in (scheme[ink], scheme[paper])]
                    self.assertGreaterEqual(contrast(*map(list, colours)), 4.5, (ink, paper))


if __name__ == "__main__":
    main("project_documents")
