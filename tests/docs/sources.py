"""The texts of the product's sources, for the tests of what the documentation quotes."""

import re

from pages import TOP

ROOMS = ("presentation-plugin", "common", "common2", "xml", "Plugins")
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
STATEMENT = re.compile(r"COMMON2_LOG(?:_AT)?\((DBG_WARN|DBG_ERROR),.*?;", re.DOTALL)
CONSTANT = re.compile(r'constexpr (?:const char\*|std::string_view|char) (\w+)(?:\[\])?\s*(?:=\s*|\{)"((?:[^"\\]|\\.)*)"')


def files():
    for room in ROOMS:
        for path in sorted((TOP / room).rglob("*")):
            if path.suffix in (".cpp", ".h"):
                yield path, path.read_text(encoding="utf-8")


def joined(code):
    """Literals that follow one another are one."""
    return re.sub(r'(?<!\\)"\s*\n?\s*"(?=[^,;)\n])', "", code)


def texts():
    """All literals."""
    return [literal for _, code in files() for literal in LITERAL.findall(joined(code))]


def warnings():
    """Place and text of each warning and error that is written: the literals of its statement, or of the constants in it."""
    for path, code in files():
        constants = dict(CONSTANT.findall(joined(code)))
        for statement in STATEMENT.finditer(code):
            message = re.sub(r"^COMMON2_LOG(?:_AT)?\([^<]*?\)\s*<<", "", joined(statement[0]), flags=re.DOTALL)
            place = f"{path.relative_to(TOP)}:{code.count(chr(10), 0, statement.start()) + 1}"
            found = [text for text in LITERAL.findall(message) if len(text.strip()) > 8]
            found += [constants[word] for word in re.findall(r"\b\w+\b", message) if word in constants]
            for text in found:
                yield place, text
