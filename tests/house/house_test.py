"""Holds the sources against the rules of ARCHITECTURE.md and CONTRIBUTING.md.

Usage: house_test.py PROJECT_ROOT
"""

import pathlib
import re
import sys
import unittest

ROOT = pathlib.Path(sys.argv.pop(1))
SOURCES = sorted(p for p in ROOT.glob("src/*/*") if p.suffix in (".cpp", ".hpp"))
TOOL_SOURCES = sorted(p for p in ROOT.glob("tools/qvtcctl/*/*") if p.suffix in (".cpp", ".hpp"))
CODE = sorted(p for folder in ("src", "tools", "tests", "examples") for p in (ROOT / folder).rglob("*")
              if p.suffix in (".cpp", ".hpp"))
INCLUDE = re.compile(r'^#include "([^"]+)"', re.MULTILINE)
LINES_OF_A_FILE = 400
LINES_OF_A_FUNCTION = 60
# Options are tested as what they are for: whole command lines, in rdp_test.cpp.
TESTED_ELSEWHERE = {"rdp_options"}

# Where all names stand, whether they do what they should or not.
NO_USE = {"null_arguments_test.cpp"}
CALLED_OTHERWISE = {"getdate": "qvtc_getdate"}  # libc declares that name otherwise


def layers(root):
    """The rows '| `root/folder` | may use ... |' of a table of layers."""
    text = (ROOT / "ARCHITECTURE.md").read_text(encoding="utf-8")
    rows = re.findall(rf"^\| `{root}/(\w+)` \|[^|]*\|([^|]*)\|", text, re.MULTILINE)
    return {folder: set(re.findall(r"`(\w+)`", may_use)) for folder, may_use in rows}


def includes(path):
    """What a file includes, as folder/file."""
    found = INCLUDE.findall(path.read_text(encoding="utf-8"))
    return [i.removeprefix("qvtcctl/") for i in found]


def function_lengths(path):
    """(first line, lines) of each block that begins at the left margin or in a class."""
    start = None
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        if start is None and re.match(r"^[A-Za-z\[].*\)( const)?( override)? \{$", line):
            start = number
        elif start is not None and line.startswith("}"):
            yield start, number - start + 1
            start = None


HOUSES = (("src", SOURCES), ("tools/qvtcctl", TOOL_SOURCES))


class House(unittest.TestCase):
    def test_every_folder_is_in_the_table_of_layers(self):
        for root, sources in HOUSES:
            self.assertEqual({p.parent.name for p in sources}, set(layers(root)), root)

    def test_includes_follow_the_layers(self):
        for root, sources in HOUSES:
            allowed = layers(root)
            for path in sources:
                own = path.parent.name
                for included in includes(path):
                    folder = included.split("/")[0]
                    if folder in (own, "qvtcapi"):
                        continue
                    self.assertIn(folder, allowed[own], f"{path.relative_to(ROOT)} includes {included}")

    def test_no_circle_of_files(self):
        for root, sources in HOUSES:
            uses = {}
            for path in sources:
                stem = f"{path.parent.name}/{path.stem}"
                own = {i.rsplit(".", 1)[0] for i in includes(path) if not i.startswith("qvtcapi/")}
                uses.setdefault(stem, set()).update(own - {stem})
            while True:
                used_by_some = set().union(*uses.values())
                outside = {stem for stem, used in uses.items() if not used & uses.keys() or stem not in used_by_some}
                if not outside:
                    break
                uses = {stem: used for stem, used in uses.items() if stem not in outside}
            self.assertEqual(uses, {}, f"these files of {root} include each other in a circle")

    def test_workers_never_use_exported_names(self):
        for path in SOURCES:
            if path.stem != "exports":
                used = [i for i in includes(path) if i.endswith("/exports.hpp")]
                self.assertEqual(used, [], f"{path.relative_to(ROOT)} calls through the public door")

    def test_every_source_has_a_test_of_its_name(self):
        for path in SOURCES:
            if path.suffix == ".cpp" and path.stem not in TESTED_ELSEWHERE:
                test = ROOT / "tests" / path.parent.name / f"{path.stem}_test.cpp"
                self.assertTrue(test.exists(), f"{path.relative_to(ROOT)} has no {test.relative_to(ROOT)}")

    def test_every_exported_name_is_used_by_a_test(self):
        text = "".join(p.read_text(encoding="utf-8") for p in (ROOT / "tests").rglob("*.c*") if p.suffix in (".c", ".cpp")
                       and p.name not in NO_USE)
        for name in (ROOT / "tests/abi/exports.txt").read_text(encoding="utf-8").split():
            called = CALLED_OTHERWISE.get(name, name)
            # Neither a member of something nor a word in a text.
            use = re.search(rf'(?<![\w.>"/-]){called}\b(?!")', text)
            self.assertTrue(use, f"{name} is exported and used by no test")

    def test_every_test_file_is_built_or_run(self):
        for folder in (p for p in (ROOT / "tests").iterdir() if p.is_dir()):
            listed = "".join(p.read_text(encoding="utf-8") for p in folder.rglob("CMakeLists.txt"))
            for test in folder.rglob("*_test.*"):
                names = (test.name, test.name.replace("_test.sh", ""))
                globbed = "GLOB_RECURSE" in listed and test.suffix == ".cpp"
                self.assertTrue(globbed or any(n in listed for n in names), f"{test.relative_to(ROOT)} is not run")

    def test_files_and_functions_stay_small(self):
        for path in CODE:
            lines = len(path.read_text(encoding="utf-8").splitlines())
            self.assertLessEqual(lines, LINES_OF_A_FILE, path.relative_to(ROOT))
        for path in SOURCES + TOOL_SOURCES:
            for start, length in function_lengths(path):
                self.assertLessEqual(length, LINES_OF_A_FUNCTION, f"{path.relative_to(ROOT)}:{start}")

    def test_fixed_size_text_functions_are_not_used(self):
        unsafe = re.compile(r"\b(strcpy|strcat|sprintf|gets|vsprintf)\(")
        for path in SOURCES + TOOL_SOURCES:
            self.assertIsNone(unsafe.search(path.read_text(encoding="utf-8")), path.relative_to(ROOT))


if __name__ == "__main__":
    unittest.main()
