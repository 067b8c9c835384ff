# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
"""Add the structure to the manual's PDF: headings, paragraphs, lists, tables, links, and figures with alternative texts.

Old versions of WeasyPrint (without the module pdf.tags) also tag PDFs, but do not support figures, restart the
structure on each page and let every text be read twice. This module marks each run of text and each picture when it is
drawn, and derives the structure from the elements of the HTML page. Anything in an element with aria-hidden="true",
and anything outside all elements, is decoration.
"""
import importlib.util

import pydyf
import weasyprint.draw
import weasyprint.pdf
from pydyf import Array, Dictionary, String

# The PDF role of each HTML element. All other elements are part of the text around them.
ROLES = {"section": "Sect", "nav": "Sect", "aside": "Sect", "h1": "H1", "h2": "H2", "h3": "H3", "p": "P", "pre": "P",
         "figcaption": "P", "ul": "L", "ol": "L", "dl": "L", "li": "LI", "dd": "LBody", "dt": "Lbl", "code": "Code",
         "a": "Link", "table": "Table", "thead": "THead", "tbody": "TBody", "tr": "TR", "th": "TH", "td": "TD",
         "img": "Figure", "svg": "Figure"}
PAINTS = {b"f", b"f*", b"F", b"S", b"s", b"B", b"B*", b"b", b"b*", b"sh", b"Do", b"TJ", b"Tj"}
VARIANT = "tagged"


def variant() -> str:
    """Return the name of a PDF variant with structure. Registers one if WeasyPrint has no suitable variant."""
    if importlib.util.find_spec("weasyprint.pdf.tags"):
        return "pdf/ua-1"
    marks = Marks()
    for name in ("draw_text", "draw_replacedbox"):
        setattr(weasyprint.draw, name, marks.around(getattr(weasyprint.draw, name)))
    weasyprint.pdf.VARIANTS[VARIANT] = (lambda pdf, _, document, streams, *__: Structure(pdf, document, streams, marks),
                                        {"mark": False})
    return VARIANT


class Marks:
    """The boxes drawn on each page, in drawing order. The index of a box is the number of its mark."""

    def __init__(self):
        self.boxes: dict[int, list] = {}  # key: identity of the page's stream

    def of(self, stream) -> list:
        return self.boxes.setdefault(id(stream), [])

    def around(self, draw):
        def marked(stream, box, *arguments):
            if is_leader(box):
                return draw(stream, box, *arguments)
            stream.stream.append(b"/Span <</MCID %d>> BDC" % len(self.of(stream)))
            self.of(stream).append(box)
            draw(stream, box, *arguments)
            stream.stream.append(b"EMC")
        return marked


def is_leader(box) -> bool:
    """Return whether the box is a dot leader in the contents or belongs to the page margin."""
    return box.element is None or (box.element_tag.endswith("::after") and not getattr(box, "text", "").strip(" ."))


class Element:
    """An element of the structure, with its role and its contents in reading order."""

    def __init__(self, structure, role: str, parent=None, place: int = 0):
        self.parent, self.place, self.kids = parent, place, []
        self.data = Dictionary({"Type": "/StructElem", "S": f"/{role}"})
        structure.pdf.add_object(self.data)
        if parent:
            parent.kids.append(self)
            self.data["P"] = parent.data.reference

    def write(self) -> None:
        """Write the contents. If all are elements, they are sorted in document order, because floats are drawn early."""
        if all(isinstance(kid, Element) for kid in self.kids):
            self.kids.sort(key=lambda kid: kid.place)
        self.data["K"] = Array(kid.data.reference if isinstance(kid, Element) else kid for kid in self.kids)
        for kid in self.kids:
            if isinstance(kid, Element):
                kid.write()


class Structure:
    """The structure of one document."""

    def __init__(self, pdf, document, streams, marks: Marks):
        self.pdf, self.pages, self.found = pdf, [pdf.objects[number] for number in pdf.pages["Kids"][::3]], {}
        tree = document._html.etree_element
        self.places = {element: place for place, element in enumerate(tree.iter())}
        self.parents = {child: parent for parent in tree.iter() for child in parent}
        root = Dictionary({"Type": "/StructTreeRoot"})
        pdf.add_object(root)
        self.document = Element(self, "Document")
        self.document.data["P"] = root.reference
        root["K"] = Array([self.document.data.reference])

        owners = Array()
        for number, (page, stream) in enumerate(zip(document.pages, streams)):
            self.pages[number].update({"StructParents": number, "Tabs": "/S"})
            self.frames = {box.element: box for box in page._page_box.descendants()
                           if box.element is not None and box.style["overflow"] == "hidden"}
            parents = [self.mark(number, mark, box, page) for mark, box in enumerate(marks.of(stream))]
            owners.extend([number, Array(parents)])
            self.hide_the_rest(stream, {mark for mark, parent in enumerate(parents) if parent == b"null"})
        for number, page in enumerate(document.pages):
            for *_, box in page.links:
                owners.extend([len(owners) // 2, self.link(number, box)])
        root["ParentTree"] = Dictionary({"Nums": owners})
        self.document.write()
        pdf.catalog.update({"StructTreeRoot": root.reference, "MarkInfo": Dictionary({"Marked": "true"}),
                            "ViewerPreferences": Dictionary({"DisplayDocTitle": "true"})})

    def mark(self, number: int, mark: int, box, page) -> bytes:
        """Add a mark to the element of its box. Return the element's reference, or null if the box is decoration."""
        if self.is_hidden(box.element):
            return b"null"
        is_label = box.element_tag in ("li::marker", "li::before")
        element = self.label(box.element) if is_label else self.element(box.element)
        element.kids.append(Dictionary({"Type": "/MCR", "Pg": self.pdf.page_references[number], "MCID": mark}))
        if element.data["S"] == "/Figure":
            element.data["Alt"] = String(box.element.get("alt") or box.element.get("aria-label"))
            element.data["A"] = Dictionary({"O": "/Layout", "BBox": self.outline(box, page)})
        return element.data.reference

    def is_hidden(self, element) -> bool:
        return element is not None and (element.get("aria-hidden") == "true" or self.is_hidden(self.parents.get(element)))

    def element(self, element) -> Element:
        """Return the structure element for an HTML element, which is created at the first call."""
        if element is None:
            return self.document
        if element in self.found:
            return self.found[element]
        above, role = self.parents.get(element), ROLES.get(element.tag.rpartition("}")[2])  # SVG is in a namespace
        if element.tag == "div" and above.tag == "dl":
            role = "LI"
        if role is None:
            return self.element(above)
        made = Element(self, role, self.element(above), self.places[element])
        if role == "TH":
            row = self.parents[above].tag == "tbody"
            made.data["A"] = Dictionary({"O": "/Table", "Scope": "/Row" if row else "/Column"})
        if element.tag == "li":
            made = Element(self, "LBody", made, 1)
        self.found[element] = made
        return made

    def label(self, item) -> Element:
        """Return the structure element for the bullet or number of a list item."""
        parent = self.element(item).parent
        labels = [kid for kid in parent.kids if kid.data["S"] == "/Lbl"]
        return labels[0] if labels else Element(self, "Lbl", parent, 0)

    def outline(self, box, page) -> Array:
        """Return the visible rectangle of a picture in points, measured from the lower left corner of the page."""
        box = self.frames.get(self.parents[box.element], box)
        left, top = box.content_box_x(), page.height - box.content_box_y()
        return Array(0.75 * side for side in (left, top - box.height, left + box.width, top))

    def link(self, number: int, box) -> bytes:
        """Connect the area of a link on the page with its structure element."""
        source, area = box.element, box.link_annotation
        while source.tag != "a":  # part of a link in another font, with its own area
            source = self.parents[source]
        element = self.element(source)
        area.update({"StructParent": len(self.pages) + self.links, "F": 4,  # print it with the page
                     "Contents": String(" ".join("".join(source.itertext()).split()))})
        self.links += 1
        element.kids.append(Dictionary({"Type": "/OBJR", "Obj": area.reference, "Pg": self.pdf.page_references[number]}))
        return element.data.reference

    links = 0  # number of links connected so far

    @staticmethod
    def hide_the_rest(stream, hidden: set[int]) -> None:
        """Mark everything outside all marks, and the hidden marks, as decoration."""
        told, between = [], []

        def flush():
            paints = any(pydyf._to_bytes(item).split()[-1] in PAINTS for item in between)
            told.extend([b"/Artifact BMC", *between, b"EMC"] if paints else between)
            between.clear()

        inside = False
        for item in stream.stream:
            if isinstance(item, bytes) and item.startswith(b"/Span <</MCID "):
                flush()
                inside = True
                mark = int(item.split()[2].rstrip(b">"))
                told.append(b"/Artifact BMC" if mark in hidden else item)
            elif inside:
                told.append(item)
                inside = item != b"EMC"
            else:
                between.append(item)
        flush()
        stream.stream[:] = told
