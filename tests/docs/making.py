"""What stands between `<!-- made: RECIPE -->` and `<!-- end -->`, made from runs of the built program.

    notice SESSION N WORD    the first notice after input N of docs/sessions/SESSION.jsonl that holds WORD
    payload SESSION N WORD   what that notice's local page gets, decoded
    event SESSION N          the event document of input N
    document SESSION N       the document that the service delivers as input N
    request SESSION N        the request that reached the service after input N
    file PATH                that file of the tree
    seams                    the headers that have a source for each platform
    wren-host ARGUMENTS      what the program prints
"""

import base64
import functools
import json
import os
import pathlib
import re
import shlex
import subprocess
import tempfile

from pages import DOCS, TOP


class RecipeError(Exception):
    """A recipe that cannot be followed."""


# What each run or each machine tells differently: the time of a notice, and who a browser says it is.
STEADY = (
    (re.compile(r'timestamp="[^"]*"'), 'timestamp="Sat Nov 21 09:41:05 2026"'),
    (re.compile(r"\((?:linux|windows)-\w+\)"), "(linux-x86_64)"),
)


def program():
    """The built program: of the build that runs the tests, or of the newest one that there is."""
    told = os.environ.get("WREN_HOST_PROGRAM")
    if told:
        return pathlib.Path(told)
    built = [TOP / "build" / preset / "bin/wren-host" for preset in ("release", "dev")]
    for candidate in built:
        if candidate.exists():
            return candidate
    raise RecipeError("wren-host is not built: scripts/build release")


def environment():
    """For runs of the program: found by name, with a data folder that nobody has put anything into."""
    variables = dict(os.environ, LC_ALL="C.UTF-8", TZ="Etc/UTC", WREN_PROGRAM_DATA="/nonexistent")
    variables["PATH"] = f"{program().parent}:{variables['PATH']}"
    return variables


def run(arguments, folder=None):
    """Standard output of the program; an exit code other than 0 is an error."""
    done = subprocess.run([program(), *arguments], env=environment(), cwd=folder, capture_output=True, text=True,
                          timeout=60, check=False)
    if done.returncode != 0:
        raise RecipeError(f"wren-host {shlex.join(map(str, arguments))}: {done.stderr.strip()}")
    return done.stdout


@functools.cache
def session(name):
    """What comes of a session: for each input, from 1, the input's line and its outputs."""
    with tempfile.TemporaryDirectory() as folder:
        lines = run(["script", str(DOCS / "sessions" / f"{name}.jsonl"), "--strict"], folder).splitlines()
    steps = []
    for line in map(json.loads, lines):
        if "do" in line:
            steps.append((line, []))
        elif line["n"] > 0: # 0: the module's loading
            steps[line["n"] - 1][1].append(line)
    return steps


def step(name, number):
    steps = session(name)
    if not 1 <= int(number) <= len(steps):
        raise RecipeError(f"session {name} has no input {number}")
    return steps[int(number) - 1]


def indented(text):
    return json.dumps(json.loads(text), indent=2, ensure_ascii=False) + "\n"


def notice(name, number, word):
    for output in step(name, number)[1]:
        if output["out"] == "notice" and word in output["xml"]:
            text = output["xml"].replace("\t", "  ").strip() + "\n"
            for pattern, words in STEADY:
                text = pattern.sub(words, text)
            return text
    raise RecipeError(f"session {name}: no notice after input {number} holds {word}")


def payload(name, number, word):
    found = re.search(r'event_dispatch_detail="([^"]*)"', notice(name, number, word))
    if not found:
        raise RecipeError(f"session {name}: the notice after input {number} has no detail")
    return indented(base64.b64decode(found[1]))


def event(name, number):
    return step(name, number)[0]["xml"] + "\n"


def document(name, number):
    return indented(step(name, number)[0]["json"])


def request(name, number):
    for output in step(name, number)[1]:
        if output["out"] == "api" and output["json"]:
            return indented(output["json"])
    raise RecipeError(f"session {name}: no request after input {number}")


def file(path):
    return (TOP / path).read_text(encoding="utf-8")


def seams():
    """A seam is a header beside a source whose name says the platform."""
    rooms = ("common2", "common", "backend-sim", "host")
    sources = (path for room in rooms for path in (TOP / room).rglob("*_linux.cpp"))
    return "".join(f"{path.relative_to(TOP)}\n" for path in sorted(sources)).replace("_linux.cpp", "")


RECIPES = {"notice": notice, "payload": payload, "event": event, "document": document, "request": request,
           "file": file, "seams": seams}


def make(recipe):
    """Follows a recipe.
    @raise RecipeError that names what is wrong
    """
    word, *arguments = shlex.split(recipe)
    if word == "wren-host":
        return run(arguments)
    if word not in RECIPES:
        raise RecipeError(f"unknown recipe: {recipe}")
    try:
        return RECIPES[word](*arguments)
    except (TypeError, KeyError, ValueError) as fault:
        raise RecipeError(f"{recipe}: {fault}") from fault


# Files that are made as a whole.
MADE_FILES = {DOCS / "machine.dot": "wren-host machine --dot"}
