"""What the documentation says is so: pages that are made are fresh, commands run and exist, links lead somewhere,
log lines are the source's."""

import json
import os
import re
import subprocess
import tempfile
import unittest

import sources
from making import MADE_FILES, RecipeError, environment, make, program, run, session
from pages import CODE_SPAN, DOCS, LINK, TOP, anchors, blocks, name_of, pages, remade, without_blocks


class Made(unittest.TestCase):
    """What is taken from the program is what the program says today."""

    maxDiff = None

    def test_blocks_are_fresh(self):
        for page in pages():
            text = page.read_text(encoding="utf-8")
            with self.subTest(page=name_of(page)):
                self.assertEqual(text, remade(text, make), "stale: run scripts/refresh-docs")

    def test_files_are_fresh(self):
        for path, recipe in MADE_FILES.items():
            with self.subTest(file=name_of(path)):
                self.assertEqual(path.read_text(encoding="utf-8"), make(recipe), "stale: run scripts/refresh-docs")

    def test_stale_blocks_are_seen(self):
        page = "<!-- made as text: wren-host machine --table --region alert -->\nold\n<!-- end -->\n"
        self.assertIn("| `AlertIdle_s` |", remade(page, make))

    def test_recipes_that_cannot_be_followed_say_so(self):
        for recipe in ("notice enrollment 99 x", "notice enrollment 6 nowhere", "notice enrollment", "dance",
                       "wren-host dance", "request enrollment 1", "payload enrollment 6 simple_status"):
            with self.subTest(recipe=recipe), self.assertRaises(RecipeError):
                make(recipe)


class Examples(unittest.TestCase):
    """Blocks marked ```sh run are run, one folder for each page; a following ```text block is their output."""

    maxDiff = None

    def test_commands_print_what_the_page_says(self):
        for page in pages():
            found = blocks(page.read_text(encoding="utf-8"))
            with tempfile.TemporaryDirectory() as folder:
                for block, following in zip(found, [*found[1:], None]):
                    if block.info == "sh run":
                        with self.subTest(page=name_of(page), line=block.line):
                            self.run_block(block, following, folder)

    def run_block(self, block, following, folder):
        done = subprocess.run(["bash", "-euo", "pipefail", "-c", block.code], cwd=folder,
                              env=environment() | {"DOCS": str(DOCS)}, capture_output=True, text=True, timeout=60,
                              check=False)
        self.assertEqual(done.returncode, 0, done.stderr)
        if following and following.info == "text":
            self.assertEqual(done.stdout.replace(str(program().parents[1]), "build/release"), following.code)

    def test_files_in_blocks_can_be_read(self):
        for page in pages():
            for block in blocks(page.read_text(encoding="utf-8")):
                if block.info == "json":
                    with self.subTest(page=name_of(page), line=block.line):
                        json.loads(block.code)


class Commands(unittest.TestCase):
    """Every command that a page names exists, and so do its options."""

    def spans(self):
        """Command lines in the pages, with the place where each stands."""
        for page in pages():
            text = page.read_text(encoding="utf-8")
            for block in blocks(text):
                if block.info.split(" ")[0] == "sh":
                    for line in block.code.splitlines():
                        yield name_of(page), line.split(" #")[0]
            for span in CODE_SPAN.findall(without_blocks(text)):
                yield name_of(page), span
            for line in without_blocks(text).splitlines():
                if line.startswith("    "):
                    yield name_of(page), re.split(r"  +", line.strip())[0]

    def test_commands_of_the_program_exist(self):
        helps = {"": run(["--help"])}
        for page, span in self.spans():
            found = re.match(r"(?:wren-host|\./run) ([a-z]+)\b(.*)", span)
            if not found:
                continue
            command, rest = found.groups()
            with self.subTest(page=page, span=span):
                self.assertRegex(helps[""], rf"(?m)^  {command} ")
                text = helps.setdefault(command, run([command, "--help"]))
                for option in re.findall(r"(?<!\S)--[a-z-]+", rest):
                    self.assertRegex(text, rf"(?m){option}\b")

    def test_every_command_of_the_program_is_told(self):
        told = {found[1] for _, span in self.spans() if (found := re.match(r"(?:wren-host|\./run) ([a-z]+)\b", span))}
        commands = run(["--help"]).split("Subcommands:\n")[1]
        self.assertEqual(sorted(told), sorted(re.findall(r"(?m)^  ([a-z]+) ", commands)))

    def test_scripts_exist(self):
        for page, span in self.spans():
            for script in re.findall(r"(?<![\w/.$])(?:scripts/[\w/-]+|\./[\w-]+)(?![\w/.])", span):
                with self.subTest(page=page, span=span):
                    self.assertTrue(os.access(TOP / script, os.X_OK), script)

    def test_the_two_commands_parse(self):
        for script in ("run", "test"):
            with self.subTest(script=script):
                self.assertIn(f"\n    ./{script} ", (TOP / "README.md").read_text(encoding="utf-8"))
                subprocess.run(["bash", "-n", TOP / script], check=True)

    def test_presets_exist(self):
        presets = {preset["name"] for preset in json.loads((TOP / "CMakePresets.json").read_text())["configurePresets"]}
        for page, span in self.spans():
            for preset in re.findall(r"(?:--preset |^\./test )([a-z]+)\b", span):
                with self.subTest(page=page, span=span):
                    self.assertIn(preset, presets)


class Links(unittest.TestCase):
    def test_links_lead_to_files_and_headings(self):
        for page in pages():
            for target in LINK.findall(without_blocks(page.read_text(encoding="utf-8"))):
                if "://" in target:
                    continue
                path, _, anchor = target.partition("#")
                file = (page.parent / path).resolve() if path else page
                with self.subTest(page=name_of(page), link=target):
                    self.assertTrue(file.exists(), "leads nowhere")
                    self.assertTrue(file.is_relative_to(TOP), "leads out of the tree")
                    if anchor:
                        self.assertIn(anchor, anchors(file.read_text(encoding="utf-8")))

    def test_contents_name_every_page(self):
        for folder in (DOCS, DOCS / "decisions"):
            contents = (folder / "README.md").read_text(encoding="utf-8")
            for page in folder.glob("*.md"):
                if page.name != "README.md":
                    with self.subTest(page=name_of(page)):
                        self.assertIn(f"]({page.name})", contents)

    def test_files_that_are_named_exist(self):
        for page in pages():
            for span in CODE_SPAN.findall(without_blocks(page.read_text(encoding="utf-8"))):
                if re.fullmatch(r"(?:docs|tests|sdk|host|common2?|xml|presentation-plugin|Plugins|backend-sim|cmake|bench|fuzz)"
                                r"(?:/[\w.-]+)+/?", span):
                    with self.subTest(page=name_of(page), file=span):
                        path = TOP / span # a module's header and sources may be named together, by their stem
                        self.assertTrue(path.exists() or any(path.parent.glob(f"{path.name}[._]*")))


class Protocol(unittest.TestCase):
    """The protocol's page knows what the plugin says, and says nothing that the plugin does not."""

    PAGE = DOCS / "notices-and-events.md"

    def notices(self):
        for path in (DOCS / "sessions").glob("*.jsonl"):
            for _, outputs in session(path.stem):
                yield from (output["xml"] for output in outputs if output["out"] == "notice")

    def test_events_are_bound_by_notices(self):
        bound = set()
        for notice in self.notices():
            bound.update(re.findall(r' On\w+="(\w+_On\w+)"', notice))
        named = set(re.findall(r"`(\w+_On\w+)`", self.PAGE.read_text(encoding="utf-8")))
        self.assertEqual(named, bound)

    def test_popups_are_shown(self):
        text = self.PAGE.read_text(encoding="utf-8")
        for notice in self.notices():
            for popup in re.findall(r'<popup[^>]* id="(\w+)"', notice):
                self.assertIn(f'id="{popup}"', text)

    def test_elements_are_told(self):
        text = self.PAGE.read_text(encoding="utf-8")
        for notice in self.notices():
            for element in re.findall(r"<([a-z]+)[ />]", notice):
                self.assertRegex(text, rf"<{element}[ />]")


class LogLines(unittest.TestCase):
    """Troubleshooting goes by log lines: those that it tells exist, and no warning and no error is missing."""

    PAGE = DOCS / "troubleshooting.md"

    def test_lines_exist_in_the_source(self):
        texts = sources.texts()
        lines = re.findall(r"^\| `([^`]+)` \|", self.PAGE.read_text(encoding="utf-8"), re.MULTILINE)
        self.assertGreater(len(lines), 40)
        for line in lines:
            for part in line.split("..."):
                if part.strip():
                    with self.subTest(line=line):
                        self.assertTrue(any(part.strip() in text for text in texts), "no such text in the source")

    def test_warnings_and_errors_are_told(self):
        page = self.PAGE.read_text(encoding="utf-8")
        for place, text in sources.warnings():
            with self.subTest(place=place):
                self.assertIn(text.strip(), page)


if __name__ == "__main__":
    unittest.main()
