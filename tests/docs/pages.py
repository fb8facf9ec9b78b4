"""The documentation as the tests and scripts/refresh-docs see it: pages, what is made in them, code, links."""

import pathlib
import re
from dataclasses import dataclass

TOP = pathlib.Path(__file__).resolve().parents[2]
DOCS = TOP / "docs"

# <!-- made as text: wren-host --help --> ... <!-- end -->: what stands between is made by scripts/refresh-docs.
MADE = re.compile(r"(<!-- made(?: as (?P<form>\w+))?: (?P<recipe>.+?) -->\n)(?P<content>.*?)(<!-- end -->)", re.DOTALL)
FENCE = re.compile(r"^```(?P<info>[^\n`]*)\n(?P<code>.*?)^```$", re.DOTALL | re.MULTILINE)
COMMENT = re.compile(r"<!--.*?-->", re.DOTALL)
CODE_SPAN = re.compile(r"`([^`\n]+)`")
LINK = re.compile(r"!?\[[^\]]*\]\(([^)\s]+)\)")
HEADING = re.compile(r"^#+ (.+)$", re.MULTILINE)


def pages():
    """All pages that people read: the README and docs/, the decisions among them."""
    return [TOP / "README.md", *sorted(DOCS.rglob("*.md"))]


def name_of(page):
    return str(page.relative_to(TOP))


@dataclass
class Block:
    info: str
    code: str
    line: int


def blocks(text):
    """The fenced blocks of a page, in order."""
    return [Block(found["info"].strip(), found["code"], text.count("\n", 0, found.start()) + 1)
            for found in FENCE.finditer(text)]


def without_blocks(text):
    return COMMENT.sub("", FENCE.sub("", text))


def anchors(text):
    """The anchors of a page's headings, as the usual renderers name them."""
    found = []
    for heading in HEADING.findall(without_blocks(text)):
        words = re.sub(r"[^\w\- ]", "", CODE_SPAN.sub(r"\1", heading).lower())
        found.append(words.strip().replace(" ", "-"))
    return found


def remade(text, make):
    """The page with everything that is made in it made anew; make(recipe) gives a text that ends with a line end."""

    def replacement(found):
        form = found["form"] or "xml"
        content = make(found["recipe"])
        if form != "markdown":
            content = f"```{form}\n{content}```\n"
        return f"{found[1]}{content}{found[5]}"

    return MADE.sub(replacement, text)
