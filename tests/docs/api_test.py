"""The public headers: pages are made of them without a warning, and every declaration in them is documented."""

import pathlib
import re
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

from pages import TOP

SDK = TOP / "sdk/wren"


def is_documented(element):
    return any("".join(element.find(kind).itertext()).strip()
               for kind in ("briefdescription", "detaileddescription") if element.find(kind) is not None)


class ApiDocs(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.folder = tempfile.TemporaryDirectory()
        cls.done = subprocess.run([TOP / "scripts/api-docs", cls.folder.name], capture_output=True, text=True,
                                  timeout=300, check=False)
        compounds = pathlib.Path(cls.folder.name, "xml").glob("*.xml")
        cls.compounds = [compound for path in compounds
                         for compound in ElementTree.parse(path).getroot().iter("compounddef")
                         if compound.get("kind") != "dir"]

    @classmethod
    def tearDownClass(cls):
        cls.folder.cleanup()

    def test_there_are_no_warnings(self):
        self.assertEqual((self.done.returncode, self.done.stderr), (0, ""))

    def test_every_header_is_documented(self):
        files = {compound.findtext("compoundname"): compound for compound in self.compounds
                 if compound.get("kind") == "file"}
        self.assertEqual(sorted(files), sorted(path.name for path in SDK.glob("*.h")))
        for name, compound in files.items():
            with self.subTest(header=name):
                self.assertTrue(is_documented(compound))

    def test_every_declaration_is_documented(self):
        count = 0
        for compound in self.compounds:
            members = [*compound.iter("memberdef"), *compound.iter("enumvalue")]
            for element in [compound, *members]:
                count += 1
                name = element.findtext("compoundname") or element.findtext("definition") or element.findtext("name")
                with self.subTest(of=compound.findtext("compoundname"), declaration=name):
                    self.assertTrue(is_documented(element))
        self.assertGreater(count, 100)

    def test_no_declaration_is_missed(self):
        """What the headers declare by name, found in their text, is what the count above went over."""
        seen = {element.findtext("name") for compound in self.compounds for element in compound.iter("memberdef")}
        seen |= {name.split("::")[-1] for name in (compound.findtext("compoundname") for compound in self.compounds)}
        for header in SDK.glob("*.h"):
            code = re.sub(r"//[^\n]*|/\*.*?\*/", "", header.read_text(encoding="utf-8"), flags=re.DOTALL)
            names = re.findall(r"\bvirtual [\w:\s*]+?\b(\w+)\(|\b(?:enum class|class|struct|enum) (?:WREN_\w+ )?(\w+)[^;]*?\{|"
                               r"\(WREN_CALL\* ?(\w+)\)|WREN_CALL (\w+)\(|# *define (WREN_\w+)\b", code)
            for name in filter(None, (name for found in names for name in found)):
                if not name.endswith("_H"): # guards
                    with self.subTest(header=header.name, declaration=name):
                        self.assertIn(name, seen)


if __name__ == "__main__":
    unittest.main()
